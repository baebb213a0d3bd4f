#include "Platform/Linux/PollScheduler.h"

#include "Platform/Linux/Clocks.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace kippo {

namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

/// poll(2) itself does not count the time asleep, so no single wait is longer than this.
constexpr milliseconds longestWait{30000};

/// Ten years, against overflow; what is no number is 0.
nanoseconds bounded(Seconds span) {
    constexpr double most = 10.0 * 365 * 86400;
    const double seconds = std::isnan(span.count()) ? 0 : std::clamp(span.count(), 0.0, most);
    return std::chrono::duration_cast<nanoseconds>(Seconds{seconds});
}

nanoseconds sinceBoot() {
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::seconds{time.tv_sec} + nanoseconds{time.tv_nsec};
}

} // namespace

PollScheduler::PollScheduler() : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

Date PollScheduler::now() const { return std::chrono::time_point_cast<Seconds>(std::chrono::system_clock::now()); }

Uptime PollScheduler::uptime() const { return Clocks::uptime(); }

Timer PollScheduler::after(Seconds delay, std::function<void()> work) {
    return add(delay, Seconds{0}, Seconds{0}, std::move(work));
}

Timer PollScheduler::every(Seconds interval, Seconds tolerance, std::function<void()> work) {
    // An interval of nothing would never let the loop wait.
    const Seconds least = std::max(interval, Seconds{0.001});
    return add(least, least, tolerance, std::move(work));
}

Timer PollScheduler::add(Seconds delay, Seconds interval, Seconds tolerance, std::function<void()> work) {
    const std::uint64_t id = state_->next++;
    state_->timers.emplace(std::pair{sinceBoot() + bounded(delay), id},
                           Work{bounded(interval), bounded(tolerance), std::move(work)});
    return Timer{[weak = std::weak_ptr(state_), id] {
        if (const auto state = weak.lock()) {
            std::erase_if(state->timers, [id](const auto& entry) { return entry.first.second == id; });
        }
    }};
}

Subscription PollScheduler::addDescriptor(int descriptor, std::function<void()> callback) {
    const std::uint64_t id = state_->next++;
    state_->descriptors.emplace(id, Watched{descriptor, std::move(callback)});
    return Subscription{[weak = std::weak_ptr(state_), id] {
        if (const auto state = weak.lock()) {
            state->descriptors.erase(id);
        }
    }};
}

void PollScheduler::post(std::function<void()> work) {
    {
        const std::lock_guard lock{mutex_};
        posted_.push_back(std::move(work));
    }
    const std::uint64_t one = 1;
    // A full counter wakes the loop just as well.
    static_cast<void>(write(wake_.get(), &one, sizeof one));
}

void PollScheduler::run() {
    while (!stopped_) {
        wait();
        runPosted();
        runDueTimers();
    }
    stopped_ = false;
}

/// Until the first timer that can wait no longer; what is due by then runs in the same wake-up.
int PollScheduler::millisecondsToWait() const {
    nanoseconds latest = nanoseconds::max();
    for (const auto& [key, work] : state_->timers) {
        latest = std::min(latest, key.first + work.tolerance);
    }
    const auto left = std::chrono::ceil<milliseconds>(latest - sinceBoot());
    return static_cast<int>(std::clamp(left, milliseconds{0}, longestWait).count());
}

void PollScheduler::wait() {
    std::vector<pollfd> polled{{.fd = wake_.get(), .events = POLLIN, .revents = 0}};
    std::vector<std::uint64_t> ids{0};
    for (const auto& [id, watched] : state_->descriptors) {
        polled.push_back({.fd = watched.descriptor, .events = POLLIN, .revents = 0});
        ids.push_back(id);
    }
    if (poll(polled.data(), polled.size(), millisecondsToWait()) <= 0) {
        return;
    }
    for (std::size_t i = 1; i < polled.size() && !stopped_; ++i) {
        const auto watched = state_->descriptors.find(ids[i]);
        if (polled[i].revents == 0 || watched == state_->descriptors.end()) {
            continue;
        }
        if (polled[i].revents & POLLNVAL) {
            state_->descriptors.erase(watched); // closed behind our back; it would wake the loop for ever
            continue;
        }
        const auto callback = watched->second.callback;
        callback();
    }
}

void PollScheduler::runPosted() {
    std::uint64_t count = 0;
    static_cast<void>(read(wake_.get(), &count, sizeof count));
    std::vector<std::function<void()>> work;
    {
        const std::lock_guard lock{mutex_};
        work.swap(posted_);
    }
    for (auto& piece : work) {
        piece();
    }
}

void PollScheduler::runDueTimers() {
    // Work that the due work schedules waits for the next round, or a timer of no delay would lock descriptors out.
    const auto now = sinceBoot();
    const auto firstNew = state_->next;
    while (!stopped_) {
        const auto due = std::ranges::find_if(state_->timers, [&](const auto& entry) {
            return entry.first.first > now || entry.first.second < firstNew;
        });
        if (due == state_->timers.end() || due->first.first > now) {
            return;
        }
        auto node = state_->timers.extract(due);
        const auto work = node.mapped().run;
        if (const auto interval = node.mapped().interval; interval > nanoseconds{0}) {
            node.key().first += interval * (1 + (now - node.key().first) / interval);
            state_->timers.insert(std::move(node));
        }
        work();
    }
}

} // namespace kippo
