#include "Agents/HookBridge.h"

#include "Support/Folders.h"
#include "Support/Json.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

// Hook mode as the agent sees it: a process that reads, appends one line and is gone. The agent waits for it, so it
// spends no system call that it can do without.
namespace kippo::HookBridge {

namespace {

using Clock = std::chrono::steady_clock;

/// In total, from the start of the process.
constexpr std::chrono::milliseconds patience{1000};

/// An input larger than this is none that an agent sends.
constexpr std::size_t maxInput = std::size_t{256} << 20;

/// Standard input's bytes. Nearly every event fits the first, static block, whose untouched pages cost nothing.
class Buffer {
public:
    char* data() { return grown_ ? grown_.get() : first_.data(); }
    std::size_t size() const { return size_; }
    char* end() { return data() + size_; }
    std::size_t room() const { return capacity_ - Json::padding - size_; }
    void add(std::size_t bytes) { size_ += bytes; }

    /// False when the input is too large or there is no memory for it.
    bool grow() {
        const std::size_t wanted = capacity_ * 8;
        if (wanted > maxInput * 2) {
            return false;
        }
        // A large block grows by moving its pages, not its bytes.
        char* block = static_cast<char*>(std::realloc(grown_.get(), wanted));
        if (block == nullptr) {
            return false;
        }
        if (!grown_) {
            std::copy_n(first_.data(), size_, block);
        }
        static_cast<void>(grown_.release());
        grown_.reset(block);
        capacity_ = wanted;
        return true;
    }

private:
    struct Free {
        void operator()(char* block) const { std::free(block); }
    };

    static constinit std::array<char, (std::size_t{64} << 10) + Json::padding> first_;
    std::unique_ptr<char, Free> grown_;
    std::size_t capacity_ = first_.size();
    std::size_t size_ = 0;
};

constinit std::array<char, (std::size_t{64} << 10) + Json::padding> Buffer::first_{};

/// Whether standard input can be read, or has ended, before `deadline`.
bool isReadable(Clock::time_point deadline) {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        const int ready = poll(&input, 1, left > 0 ? static_cast<int>(left) : 0);
        if (ready >= 0 || errno != EINTR) {
            return ready > 0 && (input.revents & POLLNVAL) == 0;
        }
    }
}

/// Reads until the end, the deadline or an error. What has come by then may be a whole event all the same: an agent
/// that forgets to close the pipe is served, only late.
bool readInput(Buffer& buffer, Clock::time_point deadline) {
    while (isReadable(deadline)) {
        if (buffer.room() == 0 && !buffer.grow()) {
            return false;
        }
        const ssize_t bytes = read(STDIN_FILENO, buffer.end(), buffer.room());
        if (bytes == 0) {
            break;
        }
        if (bytes < 0) {
            if (errno == EINTR || errno == EAGAIN) {
                continue;
            }
            return false;
        }
        buffer.add(static_cast<std::size_t>(bytes));
        if (Clock::now() >= deadline) {
            break;
        }
    }
    return buffer.size() > 0 && buffer.size() <= maxInput;
}

/// Never waits: should a pipe lie in place of the log, opening it for writing fails unless someone reads it.
int openLog(const Places& places) {
    constexpr int flags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    const std::string path = places.eventLog();
    int log = open(path.c_str(), flags, 0644);
    if (log < 0 && errno == ENOENT) {
        makeFolders(places.supportFolder);
        log = open(path.c_str(), flags, 0644);
    }
    if (log >= 0 && log <= STDERR_FILENO) {
        // The agent closed a standard stream. Should anything ever print, it must not print into the log.
        const int moved = fcntl(log, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        close(log);
        return moved;
    }
    return log;
}

/// One write, so that lines of hooks that run at the same time do not mix.
void append(const Places& places, const std::string& line) {
    const int log = openLog(places);
    if (log < 0) {
        return;
    }
    const ssize_t written = write(log, line.data(), line.size());
    if (written > 0 && static_cast<std::size_t>(written) < line.size()) {
        // The disk is full in the middle of the line. The rest may not follow, for another hook's line may by now; but
        // a line feed, if there is room for one, keeps the next line from being joined to the half.
        static_cast<void>(!write(log, "\n", 1));
    }
    close(log);
}

} // namespace

void handleHookInvocation(std::span<char* const> arguments) {
    const auto deadline = Clock::now() + patience;
    // A file size limit is a full disk like another.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    try {
        Buffer input;
        const Places places = Places::fromEnvironment();
        if (places.supportFolder.empty() || !readInput(input, deadline)) {
            return;
        }
        const Date now{std::chrono::system_clock::now().time_since_epoch()};
        if (const auto line = recordInPlace(input.data(), input.size(), agentName(arguments), now)) {
            append(places, *line);
        }
    } catch (...) {
        // No memory, most likely. The agent must not notice.
    }
}

} // namespace kippo::HookBridge
