#include "App/Terminal/Signals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace kippo::Terminal {

namespace {

// A signal handler can be told of nothing, so it finds its pipe here.
std::atomic<int> pipeForSignals{-1};

void noteSignal(int signal) {
    const int before = errno;
    const auto byte = static_cast<unsigned char>(signal);
    // A full pipe means that signals wait to be read already.
    [[maybe_unused]] const auto written = write(pipeForSignals, &byte, 1);
    errno = before;
}

} // namespace

Signals::Signals(std::initializer_list<int> wanted) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) == 0) {
        for (const int end : ends) {
            fcntl(end, F_SETFL, O_NONBLOCK);
            fcntl(end, F_SETFD, FD_CLOEXEC);
        }
        readEnd_ = ends[0];
        writeEnd_ = ends[1];
        pipeForSignals = writeEnd_;
        for (const int signal : wanted) {
            handle(signal, noteSignal);
        }
    }
    handle(SIGPIPE, SIG_IGN);
}

Signals::~Signals() {
    for (const auto& [signal, action] : before_) {
        sigaction(signal, &action, nullptr);
    }
    pipeForSignals = -1;
    close(readEnd_);
    close(writeEnd_);
}

std::vector<int> Signals::take() {
    std::array<unsigned char, 64> bytes{};
    const auto count = read(readEnd_, bytes.data(), bytes.size());
    return {bytes.begin(), bytes.begin() + (count > 0 ? count : 0)};
}

void Signals::handle(int signal, void (*handler)(int)) {
    struct sigaction action{};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    struct sigaction before{};
    if (sigaction(signal, &action, &before) == 0) {
        before_.emplace_back(signal, before);
    }
}

} // namespace kippo::Terminal
