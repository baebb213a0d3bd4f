#include "Platform/Posix/ChildProgram.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ; // NOLINT(readability-redundant-declaration): not every platform's headers declare it

namespace kippo::ChildProgram {

namespace {

using Clock = std::chrono::steady_clock;

/// The environment without what changes the listing's layout or its decimal point. The character encoding stays: under
/// the C locale `ps` and `lsof` would spell out every letter beyond ASCII.
std::vector<std::string> plainEnvironment() {
    std::vector<std::string> variables;
    for (char** entry = environ; entry && *entry; ++entry) {
        const std::string_view variable{*entry};
        const std::string_view name = variable.substr(0, variable.find('='));
        if (name == "LC_ALL") {
            variables.push_back("LC_CTYPE=" + std::string{variable.substr(name.size() + 1)});
        } else if (name != "LC_NUMERIC" && name != "COLUMNS" && !name.starts_with("PS_") && name != "CMD_ENV" &&
                   !(name == "LC_CTYPE" && std::getenv("LC_ALL"))) {
            variables.emplace_back(variable);
        }
    }
    variables.emplace_back("LC_NUMERIC=C");
    return variables;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> list;
    for (auto& text : texts) {
        list.push_back(text.data());
    }
    list.push_back(nullptr);
    return list;
}

std::optional<pid_t> spawn(const std::string& path, std::span<const std::string> arguments, int standardOutput) {
    std::vector<std::string> words{path};
    words.insert(words.end(), arguments.begin(), arguments.end());
    auto environment = plainEnvironment();
    posix_spawn_file_actions_t actions;
    if (posix_spawn_file_actions_init(&actions) != 0) {
        return std::nullopt;
    }
    pid_t pid = 0;
    const bool started =
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0) == 0 &&
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0) == 0 &&
        posix_spawn_file_actions_adddup2(&actions, standardOutput, STDOUT_FILENO) == 0 &&
        posix_spawn(&pid, path.c_str(), &actions, nullptr, pointers(words).data(), pointers(environment).data()) == 0;
    posix_spawn_file_actions_destroy(&actions);
    return started ? std::optional{pid} : std::nullopt;
}

/// Reads until the end, the limit or the deadline; false at the deadline.
bool readAll(int descriptor, Clock::time_point deadline, std::string& text) {
    std::array<char, 65536> block;
    while (text.size() < outputLimit) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd waiting{.fd = descriptor, .events = POLLIN, .revents = 0};
        const int ready = left > 0 ? poll(&waiting, 1, static_cast<int>(std::min<std::int64_t>(left, 60000))) : 0;
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        if (ready <= 0) {
            return false;
        }
        const ssize_t got = read(descriptor, block.data(), std::min(block.size(), outputLimit - text.size()));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            break;
        }
        text.append(block.data(), static_cast<std::size_t>(got));
    }
    return true;
}

bool makePipe(std::array<int, 2>& ends) {
    if (pipe(ends.data()) != 0) {
        return false;
    }
    // Not `pipe2`, which some systems lack. A program started meanwhile on another thread may inherit the ends.
    for (const int end : ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    return true;
}

} // namespace

std::optional<std::string> output(const std::string& path, std::span<const std::string> arguments,
                                  std::chrono::milliseconds patience) {
    std::array<int, 2> ends{};
    if (!makePipe(ends)) {
        return std::nullopt;
    }
    const auto pid = spawn(path, arguments, ends[1]);
    close(ends[1]);
    std::string text;
    const bool whole = pid && readAll(ends[0], Clock::now() + patience, text);
    close(ends[0]);
    if (!pid) {
        return std::nullopt;
    }
    if (!whole || text.size() >= outputLimit) {
        kill(*pid, SIGKILL);
    }
    while (waitpid(*pid, nullptr, 0) < 0 && errno == EINTR) {
    }
    return whole ? std::optional{std::move(text)} : std::nullopt;
}

} // namespace kippo::ChildProgram
