#pragma once

#include "Support/Scheduler.h"

#include <map>
#include <memory>

namespace kippo {

/// A clock that moves only when the test says so, and runs what is due in order of its time, then of its scheduling.
class FakeScheduler final : public Scheduler {
public:
    explicit FakeScheduler(Date start = dateFromUnix(1795226400)) : start_(start), now_(start) {}

    Date now() const override { return now_; }
    Uptime uptime() const override { return {now_ - start_ - set_ - asleep_, now_ - start_ - set_}; }

    [[nodiscard]] Timer after(Seconds delay, std::function<void()> work) override {
        return add(delay, Seconds{0}, std::move(work));
    }
    [[nodiscard]] Timer every(Seconds interval, Seconds, std::function<void()> work) override {
        return add(interval, interval, std::move(work));
    }

    /// Moves the clock by `span`, running what comes due at its own time, also work that due work schedules.
    void advance(Seconds span) {
        const Date end = now_ + span;
        while (!work_->empty() && work_->begin()->first.first <= end) {
            auto node = work_->extract(work_->begin());
            now_ = std::max(now_, node.key().first);
            const auto run = node.mapped().run;
            if (node.mapped().interval > Seconds{0}) {
                node.key().first += node.mapped().interval;
                work_->insert(std::move(node));
            }
            run();
        }
        now_ = end;
    }

    /// The machine is suspended for `span`; work that came due meanwhile runs when it wakes, repeating work once.
    void sleepFor(Seconds span) {
        asleep_ += span;
        now_ += span;
        rekey([this](Date due, const Work& work) { return work.interval > Seconds{0} ? std::max(due, now_) : due; });
        advance(Seconds{0});
    }

    /// Somebody sets the clock; work waits as long as it would have.
    void setClock(Date now) {
        const Seconds step = now - now_;
        rekey([step](Date due, const Work&) { return due + step; });
        set_ += step;
        now_ = now;
    }

    /// How many pieces of work are waiting.
    std::size_t pendingCount() const { return work_->size(); }

private:
    struct Work {
        Seconds interval;
        std::function<void()> run;
    };
    using Queue = std::map<std::pair<Date, unsigned>, Work>;

    template <typename Due> void rekey(Due due) {
        Queue moved;
        for (auto& [key, work] : *work_) {
            moved.emplace(std::pair{due(key.first, work), key.second}, std::move(work));
        }
        *work_ = std::move(moved);
    }

    Timer add(Seconds delay, Seconds interval, std::function<void()> run) {
        const unsigned id = next_++;
        work_->emplace(std::pair{now_ + delay, id}, Work{interval, std::move(run)});
        return Timer{[queue = std::weak_ptr(work_), id] {
            if (const auto work = queue.lock()) {
                std::erase_if(*work, [id](const auto& entry) { return entry.first.second == id; });
            }
        }};
    }

    Date start_;
    Date now_;
    Seconds asleep_{0};
    Seconds set_{0};
    unsigned next_ = 0;
    std::shared_ptr<Queue> work_ = std::make_shared<Queue>();
};

} // namespace kippo
