#include "Platform/Posix/WorkerQueue.h"

#include <utility>

namespace kippo {

WorkerQueue::WorkerQueue(std::function<void(std::function<void()>)> postToMain)
    : postToMain_(std::move(postToMain)), thread_([this] { serve(); }) {}

WorkerQueue::~WorkerQueue() {
    alive_.reset();
    std::deque<Piece> dropped;
    {
        const std::lock_guard lock{mutex_};
        ending_ = true;
        dropped.swap(pieces_);
    }
    changed_.notify_one();
    thread_.join();
}

void WorkerQueue::run(std::function<void()> work, std::function<void()> then) {
    {
        const std::lock_guard lock{mutex_};
        pieces_.push_back({std::move(work), std::move(then)});
    }
    changed_.notify_one();
}

void WorkerQueue::serve() {
    for (;;) {
        Piece piece;
        {
            std::unique_lock lock{mutex_};
            changed_.wait(lock, [this] { return ending_ || !pieces_.empty(); });
            if (ending_) {
                return;
            }
            piece = std::move(pieces_.front());
            pieces_.pop_front();
        }
        piece.work();
        // What the work holds is let go of here rather than with the next piece.
        piece.work = nullptr;
        postToMain_([alive = aliveForWorker_, then = std::move(piece.then)] {
            if (!alive.expired() && then) {
                then();
            }
        });
    }
}

} // namespace kippo
