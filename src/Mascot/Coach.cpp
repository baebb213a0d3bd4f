#include "Mascot/Coach.h"

#include "Focus/FocusStore.h"
#include "Mascot/MascotLines.h"
#include "Support/LocalTime.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>

namespace kippo {

namespace {

constexpr Seconds tickInterval{30};
constexpr Seconds tickTolerance{5};

// The first nudges after a launch come 5 and 3 minutes after it.
constexpr Seconds countedBeforeLaunch{3300};
constexpr Seconds countedBeforeLaunchAtNight{1320};

// Input more recent than this is activity; a pause longer than that ends it.
constexpr Seconds recentInput{90};
constexpr Seconds longPause{300};
// At night only who is typing now is spoken to.
constexpr Seconds presentInput{60};

constexpr int nightEnds = 6;
constexpr Seconds day{86400};

constexpr std::string_view mutedKey = "mascotMutedUntil";
constexpr std::string_view nightMutedKey = "mascotNightMutedUntil";
constexpr std::string_view askedKey = "askedWorkingOn";

bool isNight(const LocalTime& time) { return time.hour == 23 || time.hour < 5; }

/// The moment under `key`, while it is still to come.
std::optional<Date> mutedUntil(const UserDefaults& defaults, std::string_view key, Date now) {
    const Date until = dateFromUnix(defaults.get<double>(key));
    return now < until ? std::optional{until} : std::nullopt;
}

std::string stamp(const LocalTime& time) { return fmt::format("{:04}-{:02}-{:02}", time.year, time.month, time.day); }

} // namespace

Coach::Coach(const FocusStore& focus, Ports ports)
    : focus_(focus), ports_(std::move(ports)), lastNudge_(ports_.scheduler.now() - countedBeforeLaunch),
      lastNightNudge_(ports_.scheduler.now() - countedBeforeLaunchAtNight), seenUptime_(ports_.scheduler.uptime()) {}

void Coach::start() {
    timer_ = ports_.scheduler.every(tickInterval, tickTolerance, [this] { tick(); });
    launchQuestion_ = ports_.scheduler.after(launchQuestionDelay, [this] { askIfWorking(); });
}

void Coach::muteForToday(const Scheduler& scheduler, UserDefaults& defaults) {
    const Date now = scheduler.now();
    // A day of 25 hours ends later than a day's length after its start.
    defaults.set(mutedKey, unixSeconds(std::max(startOfLocalDay(now) + day, startOfLocalDay(now, 1))));
}

void Coach::goodNight(const Scheduler& scheduler, UserDefaults& defaults) {
    const Date now = scheduler.now();
    const Date today = atHour(now, nightEnds);
    defaults.set(nightMutedKey, unixSeconds(now < today ? today : atHour(startOfLocalDay(now, 1), nightEnds)));
}

Coach::Quiet Coach::quiet(const UserDefaults& defaults, Date now) {
    return {mutedUntil(defaults, mutedKey, now), mutedUntil(defaults, nightMutedKey, now)};
}

void Coach::speakAgain(UserDefaults& defaults) {
    defaults.set(mutedKey, 0.0);
    defaults.set(nightMutedKey, 0.0);
}

int Coach::focusMinutes() const { return focus_.focusMinutes(); }

void Coach::say(const MascotMessage& message) {
    if (show) {
        show(message);
    }
}

void Coach::askIfWorking() {
    const Date now = ports_.scheduler.now();
    const std::string today = stamp(localTime(now));
    if (!ports_.defaults.get<bool>("mascotEnabled") || quiet(ports_.defaults, now).until ||
        focus_.phase() != FocusStore::Phase::idle || ports_.defaults.get<std::string>(askedKey) == today ||
        !ports_.defaults.get<bool>("onboarded") || ports_.isUnsuitable()) {
        return;
    }
    ports_.defaults.set(askedKey, today);
    lastNudge_ = now;
    say(MascotLines::launchQuestion(focusMinutes(), ports_.random));
}

void Coach::tick() {
    const Date now = ports_.scheduler.now();
    const auto idle = ports_.idleTime.sinceLastInput();
    followActivity(idle, now);
    // A clock that was set back must not silence anybody for years.
    lastNudge_ = std::min(lastNudge_, now);
    lastNightNudge_ = std::min(lastNightNudge_, now);
    if (!ports_.defaults.get<bool>("mascotEnabled") || ports_.isUnsuitable()) {
        return;
    }
    if (ports_.defaults.get<bool>("mascotNightOwl") && isNight(localTime(now))) {
        considerNight(idle, now);
    } else {
        considerDay(now);
    }
}

void Coach::followActivity(std::optional<Seconds> idle, Date now) {
    const Uptime uptime = ports_.scheduler.uptime();
    const Seconds asleep = uptime.total - seenUptime_.total - (uptime.awake - seenUptime_.awake);
    seenUptime_ = uptime;
    // Whoever wakes the machine has had a pause, though the first key pressed since hides it.
    if (asleep > longPause || (activeSince_ && *activeSince_ > now)) {
        activeSince_.reset();
    }
    if (!idle || *idle > longPause) {
        activeSince_.reset();
    } else if (*idle < recentInput && !activeSince_) {
        activeSince_ = now;
    }
}

void Coach::considerNight(std::optional<Seconds> idle, Date now) {
    const Quiet silence = quiet(ports_.defaults, now);
    if (!idle || *idle >= presentInput || silence.until || silence.nightUntil || focus_.isRunning() ||
        now - lastNightNudge_ <= nightCooldown) {
        return;
    }
    lastNightNudge_ = now;
    const LocalTime time = localTime(now);
    say(MascotLines::lateNight(time.hour, time.minute, ports_.random));
}

void Coach::considerDay(Date now) {
    if (quiet(ports_.defaults, now).until || focus_.isRunning() || now - lastNudge_ <= cooldown || !activeSince_) {
        return;
    }
    const Seconds active = now - *activeSince_;
    const bool busy = ports_.workingCount() >= 1;
    if (active > activeThreshold || (busy && active > agentsThreshold)) {
        lastNudge_ = now;
        say(MascotLines::workingNudge(static_cast<int>(active.count() / 60), busy, focusMinutes(), ports_.random));
    }
}

} // namespace kippo
