#pragma once

#include "Mascot/MascotMessage.h"
#include "Support/IdleTime.h"
#include "Support/Scheduler.h"
#include "Support/UserDefaults.h"

#include <functional>
#include <optional>
#include <random>
#include <string_view>

namespace kippo {

class FocusStore;

/// Decides when the mascot speaks up on its own: whether the person works today, a pomodoro after a stretch of
/// activity, bed at night. Main queue only.
class Coach {
public:
    static constexpr Seconds activeThreshold{1200};
    static constexpr Seconds agentsThreshold{300};
    static constexpr Seconds cooldown{3600};
    static constexpr Seconds nightCooldown{1500};
    static constexpr Seconds launchQuestionDelay{4};

    struct Ports {
        Scheduler& scheduler;
        UserDefaults& defaults;
        IdleTime& idleTime;
        /// How many agents are working.
        std::function<int()> workingCount;
        /// Whether this is no moment to speak: the welcome or the demo is on, the screen is shared, a film runs.
        std::function<bool()> isUnsuitable;
        /// Which of several texts is said.
        std::mt19937 random{std::random_device{}()};
    };

    Coach(const FocusStore& focus, Ports ports);

    void start();
    /// "Quiet for the rest of today".
    static void muteForToday(const Scheduler& scheduler, UserDefaults& defaults);
    /// No night message until six in the morning.
    static void goodNight(const Scheduler& scheduler, UserDefaults& defaults);

    /// How long he keeps quiet by the person's wish.
    struct Quiet {
        std::optional<Date> until;      ///< says nothing at all
        std::optional<Date> nightUntil; ///< says nothing about bed
        bool operator==(const Quiet&) const = default;
    };
    /// As it stands at `now`; what lies in the past is left out.
    static Quiet quiet(const UserDefaults& defaults, Date now);
    /// Takes back `muteForToday` and `goodNight`.
    static void speakAgain(UserDefaults& defaults);

    std::function<void(const MascotMessage&)> show;

private:
    void askIfWorking();
    void tick();
    void followActivity(std::optional<Seconds> idle, Date now);
    void considerNight(std::optional<Seconds> idle, Date now);
    void considerDay(Date now);
    int focusMinutes() const;
    void say(const MascotMessage& message);

    const FocusStore& focus_;
    Ports ports_;
    std::optional<Date> activeSince_;
    Date lastNudge_;
    Date lastNightNudge_;
    Uptime seenUptime_;
    Timer timer_;
    Timer launchQuestion_;
};

} // namespace kippo
