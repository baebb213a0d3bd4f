#pragma once

#include "Support/SerialQueue.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace kippo {

/// Slow work on one thread of its own. Owned by the composition root; `run` is called on the main queue, and the
/// destructor too: it waits for the piece that is running and drops the rest, results included.
class WorkerQueue final : public SerialQueue {
public:
    /// `postToMain` runs a function on the main queue; it is called from the worker's thread.
    explicit WorkerQueue(std::function<void(std::function<void()>)> postToMain);
    ~WorkerQueue() override;
    WorkerQueue(const WorkerQueue&) = delete;
    WorkerQueue& operator=(const WorkerQueue&) = delete;

    void run(std::function<void()> work, std::function<void()> then) override;

private:
    struct Piece {
        std::function<void()> work;
        std::function<void()> then;
    };

    void serve();

    std::function<void(std::function<void()>)> postToMain_;
    /// Held weakly by results on their way to the main queue, which are dropped once it is gone.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    std::weak_ptr<bool> aliveForWorker_ = alive_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Piece> pieces_; ///< guarded by `mutex_`
    bool ending_ = false;      ///< guarded by `mutex_`
    std::thread thread_;       ///< last, so that it starts on a complete object
};

} // namespace kippo
