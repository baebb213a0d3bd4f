#include "Platform/Posix/EndingSignals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <tuple>

namespace kippo {

namespace {

constexpr std::array ending{SIGTERM, SIGINT, SIGHUP};

// A signal handler gets no argument of ours.
std::atomic<int> reported{-1};
static_assert(std::atomic<int>::is_always_lock_free);

void report(int) {
    const int before = errno;
    const char byte = 0;
    std::ignore = write(reported.load(), &byte, 1);
    errno = before;
}

} // namespace

EndingSignals::EndingSignals() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    reading_ = Descriptor{ends[0]};
    writing_ = Descriptor{ends[1]};
    reported = ends[1];
    struct sigaction action{};
    action.sa_handler = report;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    for (const int signal : ending) {
        // Whoever started the program may have wanted it to outlive the terminal.
        struct sigaction present{};
        if (sigaction(signal, nullptr, &present) == 0 && present.sa_handler != SIG_IGN) {
            sigaction(signal, &action, nullptr);
        }
    }
}

EndingSignals::~EndingSignals() {
    if (!reading_) {
        return;
    }
    for (const int signal : ending) {
        struct sigaction present{};
        if (sigaction(signal, nullptr, &present) == 0 && present.sa_handler == report) {
            std::signal(signal, SIG_DFL);
        }
    }
    reported = -1;
}

} // namespace kippo
