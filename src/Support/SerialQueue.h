#pragma once

#include <functional>

namespace kippo {

/// Runs slow work off the main queue, one piece at a time in order. Abstract so that stores are tested without threads;
/// the real one is a worker thread (WorkerQueue), and InlineSerialQueue serves tests and the terminal commands.
class SerialQueue {
public:
    virtual ~SerialQueue() = default;
    /// Runs `work` on the queue, then `then` on the main queue. `then` is not called after the queue was destroyed.
    virtual void run(std::function<void()> work, std::function<void()> then) = 0;
};

/// Runs both functions at once, in the caller.
class InlineSerialQueue final : public SerialQueue {
public:
    void run(std::function<void()> work, std::function<void()> then) override {
        work();
        then();
    }
};

} // namespace kippo
