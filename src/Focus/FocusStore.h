#pragma once

#include "Support/Observers.h"
#include "Support/Scheduler.h"
#include "Support/UserDefaults.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kippo {

/// A pomodoro timer: phases of focus alternate with short breaks, and every fourth focus earns a long one. Its state
/// outlives the application. While the machine is suspended a break passes and work does not count; a clock that is set
/// changes nothing of what is left. Main queue only.
class FocusStore {
public:
    enum class Phase { idle, focus, shortBreak, longBreak };

    /// A machine that slept longer than this finds its focus paused: nobody says that the person is back at it. A break
    /// that ended longer ago than this ends without a word.
    static constexpr Seconds longAbsence{1800};

    /// Phases of focus in a cycle, before the long break.
    static constexpr int rounds = 4;

    static constexpr bool isBreak(Phase phase) { return phase == Phase::shortBreak || phase == Phase::longBreak; }

    /// Takes up the state that was saved; a phase that ran out meanwhile ends silently.
    FocusStore(Scheduler& scheduler, UserDefaults& defaults);
    FocusStore(const FocusStore&) = delete;
    FocusStore& operator=(const FocusStore&) = delete;

    Phase phase() const { return state_.phase; }
    /// When the running phase ends; nothing while idle or paused.
    std::optional<Date> endsAt() const { return state_.endsAt; }
    /// What was left when the phase was paused.
    std::optional<Seconds> pausedRemaining() const { return state_.pausedRemaining; }
    /// The length of the current phase; while idle, of the next focus.
    Seconds total() const;
    /// Completed phases of focus in the current cycle of four.
    int round() const { return state_.round; }
    /// How many rounds of the cycle are done, 0 to 4: all of them until the cycle begins anew.
    int roundsDone() const;
    int completedToday() const { return state_.completedToday; }
    bool isRunning() const { return state_.endsAt.has_value(); }
    bool isPaused() const { return state_.pausedRemaining.has_value(); }
    Seconds remaining(Date at) const;
    /// The part of the phase that is over, 0 to 1.
    double progress(Date at) const;

    /// "focusMinutes", at least 1.
    int focusMinutes() const;
    /// One step shorter (`steps` -1) or longer (1) than `minutes`: to the next multiple of five, below that by single
    /// minutes; from 1 to 180.
    static int steppedMinutes(int minutes, int steps);

    /// The texts of the page and the widget.
    std::string headline() const;
    std::string subline() const;
    /// What follows the phase, such as "Next: 5 min break"; nothing while idle.
    std::string upNext() const;

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
    /// What outlives the application, under the key "focusState".
    struct Saved {
        Phase phase = Phase::idle;
        std::optional<Date> endsAt;
        std::optional<Seconds> pausedRemaining;
        Seconds total{0};
        int round = 0;
        int completedToday = 0;
        Date day = distantPast; ///< the start of the day that `completedToday` counts
    };
    static std::string encode(const Saved& saved);
    static std::optional<Saved> decode(std::string text);

    void tick();
    /// A phase that ended before today is no part of today's count.
    void finish(bool silently, Date endedAt);
    void changed();
    void restore();
    void rollDay();
    void catchUp();
    void keepTicking();
    int minutes(std::string_view key) const;
    Seconds focusLength() const;
    void beginNow(Phase phase, int minutes);
    void stand(Phase phase, std::optional<Date> endsAt, std::optional<Seconds> pausedRemaining);

    Scheduler& scheduler_;
    UserDefaults& defaults_;
    Observers observers_;
    Saved state_;
    std::optional<Saved> demoBackup_;
    Date seenAt_ = distantPast; ///< the clocks when they were last looked at
    Uptime seenUptime_;
    bool isStarted_ = false;
    Seconds tickInterval_{0};
    Timer timer_;
};

} // namespace kippo
