#include "Focus/FocusStore.h"

#include "Support/Json.h"
#include "Support/LocalTime.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fmt/format.h>
#include <limits>
#include <utility>

namespace kippo {

namespace {

using Phase = FocusStore::Phase;

constexpr std::string_view stateKey = "focusState";

constexpr Seconds runningInterval{1};
constexpr Seconds runningTolerance{0.2};
// While nothing runs, the clock only has to notice that a new day began.
constexpr Seconds restingInterval{60};
constexpr Seconds restingTolerance{10};

/// Clocks drift and are read one after the other; what is below this is neither a suspension nor a clock that was set.
constexpr Seconds noticeable{2};

constexpr std::array<std::pair<Phase, std::string_view>, 4> phaseNames{{{Phase::idle, "idle"},
                                                                        {Phase::focus, "focus"},
                                                                        {Phase::shortBreak, "shortBreak"},
                                                                        {Phase::longBreak, "longBreak"}}};

std::string_view nameOf(Phase phase) {
    return std::ranges::find(phaseNames, phase, &std::pair<Phase, std::string_view>::first)->second;
}

/// Collects the members of a saved state.
class StateVisitor final : public Json::Visitor {
public:
    bool value(Json::Path path, Json::Kind kind, std::string_view text) override {
        if (path.size() != 1) {
            return true;
        }
        if (kind == Json::Kind::string && path[0].key == "phase") {
            phase = std::string{text};
        } else if (kind == Json::Kind::number) {
            numbers_.emplace_back(path[0].key, Json::toDouble(text).value_or(0));
        }
        return true;
    }

    std::optional<double> number(std::string_view key) const {
        const auto found = std::ranges::find(numbers_, key, &std::pair<std::string, double>::first);
        return found == numbers_.end() || !std::isfinite(found->second) ? std::nullopt : std::optional{found->second};
    }
    std::optional<int> count(std::string_view key) const {
        const auto found = number(key);
        return found && *found >= 0 && *found < std::numeric_limits<int>::max()
                   ? std::optional{static_cast<int>(*found)}
                   : std::nullopt;
    }

    std::string phase;

private:
    std::vector<std::pair<std::string, double>> numbers_;
};

} // namespace

FocusStore::FocusStore(Scheduler& scheduler, UserDefaults& defaults)
    : scheduler_(scheduler), defaults_(defaults), seenAt_(scheduler.now()), seenUptime_(scheduler.uptime()) {
    state_.total = focusLength();
    state_.day = startOfLocalDay(seenAt_);
    restore();
}

int FocusStore::minutes(std::string_view key) const {
    const auto minutes = defaults_.get<std::int64_t>(key);
    return static_cast<int>(std::clamp<std::int64_t>(minutes, 1, 24L * 60));
}

int FocusStore::focusMinutes() const { return minutes("focusMinutes"); }

int FocusStore::roundsDone() const {
    const int done = state_.round % rounds;
    return done == 0 && state_.round > 0 && state_.phase != Phase::focus ? rounds : done;
}

int FocusStore::steppedMinutes(int minutes, int steps) {
    constexpr int step = 5;
    constexpr int longest = 180;
    for (; steps > 0; --steps) {
        minutes = minutes < step ? minutes + 1 : (minutes / step + 1) * step;
    }
    for (; steps < 0; ++steps) {
        minutes = minutes <= step ? minutes - 1 : (minutes - 1) / step * step;
    }
    return std::clamp(minutes, 1, longest);
}

Seconds FocusStore::total() const { return state_.phase == Phase::idle ? focusLength() : state_.total; }

Seconds FocusStore::focusLength() const { return std::chrono::minutes{focusMinutes()}; }

Seconds FocusStore::remaining(Date at) const {
    if (state_.pausedRemaining) {
        return *state_.pausedRemaining;
    }
    return state_.endsAt ? std::max(*state_.endsAt - at, Seconds{0}) : total();
}

double FocusStore::progress(Date at) const {
    const double length = total().count();
    return length > 0 ? std::clamp(1 - remaining(at).count() / length, 0.0, 1.0) : 0;
}

std::string FocusStore::headline() const {
    switch (state_.phase) {
    case Phase::focus:
        return "Heads down";
    case Phase::shortBreak:
        return "Stretch, sip, look away";
    case Phase::longBreak:
        return "Long break. You earned it";
    case Phase::idle:
        break;
    }
    return state_.completedToday == 0 ? "Ready when you are" : "Nice. Another round?";
}

std::string FocusStore::subline() const {
    std::string line;
    if (state_.phase == Phase::focus) {
        line = "Round " + std::to_string(state_.round % rounds + 1) + " of " + std::to_string(rounds) + " · ";
    }
    return line + (state_.completedToday == 1 ? "1 focus session today"
                                              : std::to_string(state_.completedToday) + " focus sessions today");
}

std::string FocusStore::upNext() const {
    if (state_.phase == Phase::idle) {
        return {};
    }
    if (isBreak(state_.phase)) {
        return fmt::format("Next: {} min of focus, when you start it", focusMinutes());
    }
    const bool isLong = (state_.round + 1) % rounds == 0;
    return fmt::format("Next: {} min {}{}", minutes(isLong ? "longBreakMinutes" : "shortBreakMinutes"),
                       isLong ? "long break" : "break",
                       defaults_.get<bool>("autoStartBreaks") ? "" : ", when you start it");
}

void FocusStore::start() {
    isStarted_ = true;
    keepTicking();
    tick();
}

void FocusStore::begin(Phase phase, int minutes) {
    catchUp();
    beginNow(phase, minutes);
    changed();
}

void FocusStore::beginNow(Phase phase, int minutes) {
    state_.total = std::chrono::minutes{std::max(minutes, 1)};
    stand(phase, scheduler_.now() + state_.total, std::nullopt);
}

void FocusStore::startBreak() {
    const bool isLong = state_.round >= 1 && state_.round % rounds == 0;
    begin(isLong ? Phase::longBreak : Phase::shortBreak, minutes(isLong ? "longBreakMinutes" : "shortBreakMinutes"));
}

void FocusStore::toggle() {
    if (isPaused()) {
        resume();
    } else if (isRunning()) {
        pause();
    } else {
        begin(Phase::focus, focusMinutes());
    }
}

void FocusStore::pause() {
    catchUp();
    if (isRunning()) {
        stand(state_.phase, std::nullopt, remaining(scheduler_.now()));
        changed();
    }
}

void FocusStore::resume() {
    if (isPaused()) {
        catchUp();
        stand(state_.phase, scheduler_.now() + *state_.pausedRemaining, std::nullopt);
        changed();
    }
}

void FocusStore::skip() {
    if (state_.phase != Phase::idle) {
        rollDay();
        finish(false, scheduler_.now());
    }
}

void FocusStore::reset() {
    stand(Phase::idle, std::nullopt, std::nullopt);
    state_.total = focusLength();
    changed();
}

void FocusStore::startDemo(int minutes) {
    if (!demoBackup_) {
        demoBackup_ = state_;
    }
    begin(Phase::focus, minutes);
}

void FocusStore::endDemo() {
    if (demoBackup_) {
        state_ = *std::exchange(demoBackup_, std::nullopt);
        changed();
    }
}

void FocusStore::stand(Phase phase, std::optional<Date> endsAt, std::optional<Seconds> pausedRemaining) {
    state_.phase = phase;
    state_.endsAt = endsAt;
    state_.pausedRemaining = pausedRemaining;
}

void FocusStore::tick() {
    catchUp();
    const Date now = scheduler_.now();
    rollDay();
    if (state_.endsAt && *state_.endsAt <= now) {
        finish(isBreak(state_.phase) && now - *state_.endsAt > longAbsence, *state_.endsAt);
    }
}

void FocusStore::catchUp() {
    const Date now = scheduler_.now();
    const Uptime uptime = scheduler_.uptime();
    const Seconds passed = uptime.total - seenUptime_.total;
    const Seconds asleep = passed - (uptime.awake - seenUptime_.awake);
    const Seconds clockStep = now - seenAt_ - passed;
    seenAt_ = now;
    seenUptime_ = uptime;
    if (!state_.endsAt) {
        return;
    }
    const bool clockWasSet = std::abs(clockStep.count()) > noticeable.count();
    const bool hasSlept = state_.phase == Phase::focus && asleep > noticeable;
    if (clockWasSet) {
        *state_.endsAt += clockStep;
    }
    if (hasSlept) {
        *state_.endsAt += asleep;
        if (asleep > longAbsence) {
            stand(state_.phase, std::nullopt, remaining(now));
        }
    }
    if (clockWasSet || hasSlept) {
        changed();
    }
}

void FocusStore::finish(bool silently, Date endedAt) {
    const Phase ended = state_.phase;
    Phase next = Phase::idle;
    if (ended == Phase::focus) {
        ++state_.round;
        if (endedAt >= state_.day) {
            ++state_.completedToday;
        }
        next = state_.round % rounds == 0 ? Phase::longBreak : Phase::shortBreak;
    } else if (ended == Phase::longBreak) {
        state_.round = 0;
    }
    stand(Phase::idle, std::nullopt, std::nullopt);
    if (isBreak(next) && !silently && defaults_.get<bool>("autoStartBreaks")) {
        beginNow(next, minutes(next == Phase::longBreak ? "longBreakMinutes" : "shortBreakMinutes"));
    } else {
        state_.total = focusLength();
    }
    changed();
    if (!silently && onPhaseEnd) {
        onPhaseEnd(ended, next);
    }
}

void FocusStore::changed() {
    if (!demoBackup_) {
        defaults_.set(stateKey, encode(state_));
    }
    keepTicking();
    if (onChange) {
        onChange();
    }
    observers_.notify();
}

void FocusStore::keepTicking() {
    const Seconds interval = isRunning() ? runningInterval : restingInterval;
    if (!isStarted_ || interval == tickInterval_) {
        return;
    }
    tickInterval_ = interval;
    timer_ = scheduler_.every(interval, isRunning() ? runningTolerance : restingTolerance, [this] { tick(); });
}

void FocusStore::rollDay() {
    const Date today = startOfLocalDay(scheduler_.now());
    if (today == state_.day) {
        return;
    }
    state_.day = today;
    state_.completedToday = 0;
    changed();
}

void FocusStore::restore() {
    const auto saved = decode(defaults_.get<std::string>(stateKey));
    if (!saved) {
        return;
    }
    const Date today = state_.day;
    state_ = *saved;
    if (saved->day != today) {
        state_.day = today;
        state_.completedToday = 0;
    }
    if (state_.endsAt && *state_.endsAt <= scheduler_.now()) {
        finish(true, *state_.endsAt);
    }
}

std::string FocusStore::encode(const Saved& saved) {
    std::string text;
    Json::Writer json{text};
    json.beginObject().key("phase").string(nameOf(saved.phase));
    if (saved.endsAt) {
        json.key("endsAt").number(referenceSeconds(*saved.endsAt));
    }
    if (saved.pausedRemaining) {
        json.key("pausedRemaining").number(saved.pausedRemaining->count());
    }
    json.key("total").number(saved.total.count());
    json.key("round").number(std::int64_t{saved.round});
    json.key("completedToday").number(std::int64_t{saved.completedToday});
    json.key("day").number(referenceSeconds(saved.day)).endObject();
    return text;
}

std::optional<FocusStore::Saved> FocusStore::decode(std::string text) {
    StateVisitor found;
    if (Json::read(text, found) != Json::Outcome::complete) {
        return std::nullopt;
    }
    const auto phase = std::ranges::find(phaseNames, found.phase, &std::pair<Phase, std::string_view>::second);
    const auto total = found.number("total");
    const auto round = found.count("round");
    const auto completed = found.count("completedToday");
    const auto day = found.number("day");
    if (phase == phaseNames.end() || !total || *total < 0 || !round || !completed || !day) {
        return std::nullopt;
    }
    Saved saved{.phase = phase->first,
                .endsAt = std::nullopt,
                .pausedRemaining = std::nullopt,
                .total = Seconds{*total},
                .round = *round,
                .completedToday = *completed,
                .day = dateFromReference(*day)};
    // A phase either runs or is paused; nothing else can be taken up.
    if (saved.phase != Phase::idle) {
        const auto endsAt = found.number("endsAt");
        const auto paused = found.number("pausedRemaining");
        if (endsAt.has_value() == paused.has_value() || (paused && *paused < 0)) {
            return std::nullopt;
        }
        saved.endsAt = endsAt ? std::optional{dateFromReference(*endsAt)} : std::nullopt;
        saved.pausedRemaining = paused ? std::optional{Seconds{*paused}} : std::nullopt;
    }
    return saved;
}

} // namespace kippo
