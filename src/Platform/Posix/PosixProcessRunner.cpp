#include "Platform/Posix/PosixProcessRunner.h"

#include "Support/Text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

extern char** environ; // NOLINT(readability-redundant-declaration): not every platform's headers declare it

namespace kippo {

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

/// What shells give for a program that could not be started.
constexpr int couldNotStart = 127;

/// The environment without what changes a listing's layout or its decimal point. The character encoding stays: under
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

bool isProgram(const std::string& path) {
    struct stat file{};
    return access(path.c_str(), X_OK) == 0 && stat(path.c_str(), &file) == 0 && S_ISREG(file.st_mode);
}

/// The program at `path`, or else the one of that name on the PATH; empty when there is neither.
std::string locate(const std::string& path) {
    if (isProgram(path)) {
        return path;
    }
    const char* places = std::getenv("PATH");
    for (const std::string_view folder : Text::split(places ? places : "", ':')) {
        std::string candidate = std::string{folder} + "/" + std::string{Text::lastPathComponent(path)};
        if (folder.starts_with('/') && isProgram(candidate)) {
            return candidate;
        }
    }
    return {};
}

/// In the child: becomes the program. Only calls that are safe after a fork among threads.
[[noreturn]] void become(const char* path, char** words, char** variables, int standardOutput, pid_t parent) {
#ifdef __linux__
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(couldNotStart); // it ended before that took hold
    }
#else
    static_cast<void>(parent);
#endif
    std::signal(SIGPIPE, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    const int nothing = open("/dev/null", O_RDWR);
    if (dup2(nothing, STDIN_FILENO) >= 0 && dup2(nothing, STDERR_FILENO) >= 0 &&
        dup2(standardOutput, STDOUT_FILENO) >= 0) {
        execve(path, words, variables);
    }
    _exit(couldNotStart);
}

/// The pid, or -1.
pid_t spawn(const std::string& path, std::span<const std::string> arguments, int standardOutput) {
    std::vector<std::string> words{path};
    words.insert(words.end(), arguments.begin(), arguments.end());
    auto environment = plainEnvironment();
    const auto wordPointers = pointers(words);
    const auto variablePointers = pointers(environment);
    const pid_t parent = getpid();
    const pid_t pid = fork();
    if (pid == 0) {
        become(path.c_str(), const_cast<char**>(wordPointers.data()), const_cast<char**>(variablePointers.data()),
               standardOutput, parent);
    }
    return pid;
}

int millisecondsUntil(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<Milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::clamp<Milliseconds::rep>(left.count(), 0, 60000));
}

/// Reads until the end or the limit; false at the deadline and when `stopped` becomes readable.
bool readAll(int descriptor, int stopped, Clock::time_point deadline, std::string& text) {
    std::array<char, 65536> block;
    while (text.size() < PosixProcessRunner::outputLimit) {
        std::array<pollfd, 2> waiting{pollfd{.fd = descriptor, .events = POLLIN, .revents = 0},
                                      pollfd{.fd = stopped, .events = POLLIN, .revents = 0}};
        const int ready = poll(waiting.data(), waiting.size(), millisecondsUntil(deadline));
        if ((ready < 0 && errno == EINTR) || (ready == 0 && Clock::now() < deadline)) {
            continue;
        }
        if (ready <= 0 || waiting[1].revents != 0) {
            return false;
        }
        const ssize_t got =
            read(descriptor, block.data(), std::min(block.size(), PosixProcessRunner::outputLimit - text.size()));
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

/// Waits for a child's end; its status, or nothing at the deadline and when `stopped` becomes readable.
std::optional<int> awaitEnd(pid_t pid, int stopped, Clock::time_point deadline) {
    int pause = 1;
    for (;;) {
        int status = 0;
        const pid_t ended = waitpid(pid, &status, WNOHANG);
        if (ended == pid || (ended < 0 && errno != EINTR)) {
            return status;
        }
        pollfd waiting{.fd = stopped, .events = POLLIN, .revents = 0};
        if (Clock::now() >= deadline || poll(&waiting, 1, std::min(pause, millisecondsUntil(deadline))) > 0) {
            return std::nullopt;
        }
        pause = std::min(pause * 2, 20);
    }
}

/// Both ends closed in other programs. Not `pipe2`, which some systems lack.
std::array<Descriptor, 2> makePipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        return {};
    }
    for (const int end : ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    return {Descriptor{ends[0]}, Descriptor{ends[1]}};
}

} // namespace

PosixProcessRunner::PosixProcessRunner() {
    auto ends = makePipe();
    stopped_ = std::move(ends[0]);
    stop_ = std::move(ends[1]);
}

PosixProcessRunner::~PosixProcessRunner() = default;

void PosixProcessRunner::stop() { static_cast<void>(!write(stop_.get(), "", 1)); }

std::optional<std::string> PosixProcessRunner::output(const std::string& path, std::span<const std::string> arguments,
                                                      Seconds patience) {
    const auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(patience);
    const std::string program = locate(path);
    pollfd stopped{.fd = stopped_.get(), .events = POLLIN, .revents = 0};
    if (program.empty() || poll(&stopped, 1, 0) != 0) {
        return std::nullopt;
    }
    auto ends = makePipe();
    const pid_t pid = ends[1] ? spawn(program, arguments, ends[1].get()) : -1;
    if (pid < 0) {
        return std::nullopt;
    }
    ends[1] = Descriptor{};
    std::string text;
    const bool whole = readAll(ends[0].get(), stopped_.get(), deadline, text) && text.size() < outputLimit;
    const auto status = whole ? awaitEnd(pid, stopped_.get(), deadline) : std::nullopt;
    if (!status) {
        kill(pid, SIGKILL);
        reap(pid);
        return text.size() >= outputLimit ? std::optional{std::move(text)} : std::nullopt;
    }
    const bool failed = WIFEXITED(*status) && WEXITSTATUS(*status) == couldNotStart && text.empty();
    return failed ? std::nullopt : std::optional{std::move(text)};
}

/// Waits a little for the end of a child that was killed; one that the kernel holds on to is tried again next time.
void PosixProcessRunner::reap(int pid) {
    const std::lock_guard lock{mutex_};
    std::erase_if(unreaped_, [](int old) { return waitpid(old, nullptr, WNOHANG) != 0; });
    if (!awaitEnd(pid, -1, Clock::now() + Milliseconds{500})) {
        unreaped_.push_back(pid);
    }
}

} // namespace kippo
