#pragma once

#include "Platform/Posix/Descriptor.h"
#include "Support/Observers.h"
#include "Support/Scheduler.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace kippo {

/// The main queue of the terminal commands: timers and file descriptors on poll(2). Everything is called on the thread
/// that calls `run`; only `post` may be called from others. Deadlines are measured on a clock that goes on while the
/// machine sleeps, so that what came due then runs on waking, a repeating timer once.
class PollScheduler final : public Scheduler {
public:
    PollScheduler();

    Date now() const override;
    Uptime uptime() const override;
    [[nodiscard]] Timer after(Seconds delay, std::function<void()> work) override;
    [[nodiscard]] Timer every(Seconds interval, Seconds tolerance, std::function<void()> work) override;

    /// Calls back whenever `descriptor` can be read, or is at its end, until the subscription is dropped. The caller
    /// keeps it open and reads what there is, or it is called again at once.
    [[nodiscard]] Subscription addDescriptor(int descriptor, std::function<void()> callback);

    /// Runs `work` on the running thread soon, in the order of the calls. From any thread.
    void post(std::function<void()> work);

    /// Works until `stop`, which any callback may call. A stop before the run ends that run at once.
    void run();
    void stop() { stopped_ = true; }

private:
    using Moment = std::chrono::nanoseconds; ///< since boot
    struct Work {
        Moment interval{0}; ///< 0 for a one-shot
        Moment tolerance{0};
        std::function<void()> run;
    };
    struct Watched {
        int descriptor = -1;
        std::function<void()> callback;
    };
    /// Shared with the handles, which may outlive the scheduler.
    struct State {
        std::map<std::pair<Moment, std::uint64_t>, Work> timers;
        std::map<std::uint64_t, Watched> descriptors;
        std::uint64_t next = 0;
    };

    Timer add(Seconds delay, Seconds interval, Seconds tolerance, std::function<void()> work);
    int millisecondsToWait() const;
    void runDueTimers();
    void wait();
    void runPosted();

    std::shared_ptr<State> state_ = std::make_shared<State>();
    Descriptor wake_; ///< an eventfd that `post` writes to
    std::mutex mutex_;
    std::vector<std::function<void()>> posted_; ///< guarded by `mutex_`
    bool stopped_ = false;
};

} // namespace kippo
