#pragma once

#include "Support/Observers.h"
#include "Support/Scheduler.h"
#include "Support/UserDefaults.h"

#include <functional>
#include <optional>
#include <string>

namespace kippo {

/// A pomodoro timer: phases of focus alternate with short breaks, and every fourth focus earns a long one. Its state
/// outlives the application. Main queue only.
class FocusStore {
public:
    enum class Phase { idle, focus, shortBreak, longBreak };

    static constexpr bool isBreak(Phase phase) { return phase == Phase::shortBreak || phase == Phase::longBreak; }

    /// Takes up the state that was saved; a phase that ran out meanwhile ends silently.
    FocusStore(Scheduler& scheduler, UserDefaults& defaults);
    FocusStore(const FocusStore&) = delete;
    FocusStore& operator=(const FocusStore&) = delete;

    Phase phase() const { return phase_; }
    /// When the running phase ends; nothing while idle or paused.
    std::optional<Date> endsAt() const { return endsAt_; }
    /// What was left when the phase was paused.
    std::optional<Seconds> pausedRemaining() const { return pausedRemaining_; }
    /// The length of the current phase; while idle, of the next focus.
    Seconds total() const { return total_; }
    /// Completed phases of focus in the current cycle of four.
    int round() const { return round_; }
    int completedToday() const { return completedToday_; }
    bool isRunning() const { return endsAt_.has_value(); }
    bool isPaused() const { return pausedRemaining_.has_value(); }
    Seconds remaining(Date at) const;
    /// The part of the phase that is over, 0 to 1.
    double progress(Date at) const;

    /// "focusMinutes", at least 1.
    int focusMinutes() const;

    /// The texts of the page and the widget.
    std::string headline() const;
    std::string subline() const;

    /// Starts the clock.
    void start();
    void begin(Phase phase, int minutes);
    /// The break that is due: a long one after every fourth focus.
    void startBreak();
    /// Starts a focus, pauses or resumes.
    void toggle();
    void pause();
    void resume();
    /// Ends the phase as if it had run out.
    void skip();
    void reset();

    /// A phase for the demo tour; the real state is put aside until `endDemo` and never overwritten.
    void startDemo(int minutes);
    void endDemo();

    /// A phase ended, and which one follows (whether or not it began).
    std::function<void(Phase ended, Phase next)> onPhaseEnd;
    std::function<void()> onChange;
    /// As `onChange`, for any number of views.
    [[nodiscard]] Subscription observe(std::function<void()> callback) { return observers_.add(std::move(callback)); }

private:
    struct Saved;
    void tick();
    void finish(bool silently);
    void changed();
    void restore();
    void rollDay();
    Saved saved() const;
    void adopt(const Saved& saved);

    Scheduler& scheduler_;
    UserDefaults& defaults_;
    Observers observers_;
    Phase phase_ = Phase::idle;
    std::optional<Date> endsAt_;
    std::optional<Seconds> pausedRemaining_;
    Seconds total_{0};
    int round_ = 0;
    int completedToday_ = 0;
    Date countedDay_ = distantPast;
    Timer timer_;
};

} // namespace kippo
