#include "Platform/Qt/QtScheduler.h"

#include "Platform/Linux/Clocks.h"

#include <QObject>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>

namespace kippo {

namespace {

using Steady = std::chrono::steady_clock;

/// Neither clock of Qt's timers runs while the machine sleeps: a long wait looks at the wall clock this often.
constexpr Seconds longestWait{15};

Date wallClock() { return std::chrono::time_point_cast<Seconds>(std::chrono::system_clock::now()); }

/// One piece of work that waits, owned by the handle that its scheduling returned.
class Waiting : public std::enable_shared_from_this<Waiting> {
public:
    Waiting(Seconds interval, bool repeats, Qt::TimerType type, std::function<void()> work)
        : interval_(interval), repeats_(repeats), work_(std::move(work)), timer_(new QTimer) {
        timer_->setSingleShot(true);
        timer_->setTimerType(type);
    }

    void start() {
        QObject::connect(timer_.get(), &QTimer::timeout, timer_.get(), [weak = weak_from_this()] {
            if (const auto self = weak.lock()) {
                self->look();
            }
        });
        dueAt_ = wallClock() + interval_;
        dueSteady_ = Steady::now() + std::chrono::duration_cast<Steady::duration>(interval_);
        wait();
    }

    void cancel() {
        isCancelled_ = true;
        timer_->stop();
    }

private:
    struct Later {
        void operator()(QTimer* timer) const { timer->deleteLater(); } // it may be sending its signal
    };

    Seconds timeLeft() const { return std::min<Seconds>(dueAt_ - wallClock(), dueSteady_ - Steady::now()); }

    void wait() {
        const Seconds wait = std::clamp<Seconds>(timeLeft(), Seconds{0}, longestWait);
        timer_->start(std::chrono::milliseconds{std::lround(std::ceil(wait.count() * 1000))});
    }

    void look() {
        // A coarse timer may fire a little early.
        const bool isPrecise = timer_->timerType() == Qt::PreciseTimer;
        const Seconds early = isPrecise ? Seconds{0} : interval_ * 0.05;
        if (timeLeft() > early) {
            wait();
            return;
        }
        if (repeats_) {
            // From the time that was meant, so that it does not drift; but what was slept through is not made up for.
            const Seconds late = -timeLeft();
            const Seconds next = late < interval_ ? interval_ - late : interval_;
            dueAt_ = wallClock() + next;
            dueSteady_ = Steady::now() + std::chrono::duration_cast<Steady::duration>(next);
            wait();
        }
        const auto work = work_; // which may cancel itself
        work();
    }

    Seconds interval_;
    bool repeats_;
    bool isCancelled_ = false;
    std::function<void()> work_;
    std::unique_ptr<QTimer, Later> timer_;
    Date dueAt_;
    Steady::time_point dueSteady_;
};

Timer schedule(Seconds interval, bool repeats, Qt::TimerType type, std::function<void()> work) {
    auto waiting = std::make_shared<Waiting>(interval, repeats, type, std::move(work));
    waiting->start();
    return Timer{[waiting] { waiting->cancel(); }};
}

} // namespace

Date QtScheduler::now() const { return wallClock(); }

Uptime QtScheduler::uptime() const { return Clocks::uptime(); }

Timer QtScheduler::after(Seconds delay, std::function<void()> work) {
    return schedule(delay, false, Qt::PreciseTimer, std::move(work));
}

Timer QtScheduler::every(Seconds interval, Seconds tolerance, std::function<void()> work) {
    // Qt's coarse timers are off by up to 5 % and wake up together with others.
    const bool mayBeLate = tolerance >= interval * 0.05 && tolerance > Seconds{0};
    return schedule(interval, true, mayBeLate ? Qt::CoarseTimer : Qt::PreciseTimer, std::move(work));
}

} // namespace kippo
