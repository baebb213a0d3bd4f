#pragma once

#include "Support/Time.h"

#include <functional>
#include <utility>

namespace kippo {

/// A handle on scheduled work. Dropping or cancelling it cancels the work; after a one-shot has run it does nothing.
class Timer {
public:
    Timer() = default;
    explicit Timer(std::function<void()> cancel) : cancel_(std::move(cancel)) {}
    Timer(Timer&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}
    Timer& operator=(Timer&& other) noexcept {
        if (this != &other) {
            cancel();
            cancel_ = std::exchange(other.cancel_, nullptr);
        }
        return *this;
    }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer() { cancel(); }

    /// Cancels the work if it has not run yet.
    void cancel() {
        if (auto work = std::exchange(cancel_, nullptr)) {
            work();
        }
    }

private:
    std::function<void()> cancel_;
};

/// How long the machine has been up, since some moment, by clocks that nobody sets.
struct Uptime {
    Seconds awake{0}; ///< stands still while the machine is suspended
    Seconds total{0}; ///< does not
};

/// Tells the time and runs work later on the main queue. Abstract so that tests never wait; the real ones are
/// QtScheduler in the application and PollScheduler in the terminal.
class Scheduler {
public:
    virtual ~Scheduler() = default;
    /// The wall clock.
    virtual Date now() const = 0;
    virtual Uptime uptime() const = 0;
    /// Runs `work` once after `delay`; dropping the returned handle cancels it.
    [[nodiscard]] virtual Timer after(Seconds delay, std::function<void()> work) = 0;
    /// Runs `work` every `interval`, first one interval from now; may be late by `tolerance` to share a wake-up.
    [[nodiscard]] virtual Timer every(Seconds interval, Seconds tolerance, std::function<void()> work) = 0;
};

} // namespace kippo
