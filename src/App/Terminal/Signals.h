#pragma once

#include <csignal>
#include <initializer_list>
#include <utility>
#include <vector>

namespace kippo::Terminal {

/// Turns signals into something to read, so that the main queue obeys them between two pieces of work. One object at a
/// time; the signals' earlier handling comes back with its end. A write to a pipe without reader fails instead of
/// killing while it lives.
class Signals {
public:
    Signals(std::initializer_list<int> wanted);
    ~Signals();
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

    /// Readable when a signal came.
    int descriptor() const { return readEnd_; }
    /// The signals that came, in order.
    std::vector<int> take();

private:
    void handle(int signal, void (*handler)(int));

    int readEnd_ = -1;
    int writeEnd_ = -1;
    std::vector<std::pair<int, struct sigaction>> before_;
};

} // namespace kippo::Terminal
