#include "Mascot/MascotStage.h"

#include "Support/LocalTime.h"

#include <algorithm>
#include <cmath>

namespace kippo {

namespace {

// Long enough between two walks that nobody waits for the next. Where nothing happens each rest is twice as long as the
// one before, so that a panel that stays open is a calm one.
constexpr Seconds shortestRest{12};
constexpr Seconds longestRest{45};
constexpr int doublings = 3;
constexpr Seconds timeToNod{20};

// He gathers himself before the first step.
constexpr Seconds windUp{0.3};
constexpr double shortestWalk = 0.12;
// Half of him must not leave the floor.
constexpr double edge = 0.06;

Seconds walkLength(double distance, double floorLength) {
    return windUp + Seconds{distance * floorLength / MascotStage::pace};
}

} // namespace

double MascotStage::Floor::position(Date now, double length) const {
    if (state != State::walk || goal == x) {
        return x;
    }
    const Seconds going = now - since - windUp;
    const Seconds whole = walkLength(std::abs(goal - x), length) - windUp;
    return std::lerp(x, goal, std::clamp(going / whole, 0.0, 1.0));
}

MascotStage::MascotStage(Scheduler& scheduler, std::mt19937 random) : scheduler_(scheduler), random_(random) {}

void MascotStage::setRoaming(bool roams) {
    if (roams == roams_) {
        return;
    }
    roams_ = roams;
    floor_ = {};
    scheduleNext();
    observers_.notify();
}

void MascotStage::setFloorShown(bool shown) {
    if (shown == isFloorShown_) {
        return;
    }
    isFloorShown_ = shown;
    walks_ = 0;
    // Whoever opens the panel finds him standing, not on his way.
    if (!shown && floor_.state == State::walk) {
        enter(State::idle);
        return;
    }
    scheduleNext();
}

void MascotStage::setFloorLength(double length) {
    if (length > 0 && length != floorLength_) {
        floor_.x = floor_.goal = floor_.position(scheduler_.now(), floorLength_);
        floorLength_ = length;
        if (floor_.state == State::walk) {
            enter(State::idle);
        }
    }
}

void MascotStage::setWingShown(bool shown) {
    if (shown == wing_.has_value()) {
        return;
    }
    wing_ = shown ? std::optional{Actor{State::sleep, scheduler_.now()}} : std::nullopt;
    observers_.notify();
}

void MascotStage::setState(State state) {
    if (roams_) {
        enter(state);
    }
}

void MascotStage::clip() {
    if (floor_.state == State::idle || floor_.state == State::walk) {
        setState(State::catching);
    }
}

void MascotStage::agentDone() {
    if (floor_.state != State::sleep) {
        setState(State::cheer);
    }
}

void MascotStage::agentNeedsYou() { setState(State::panic); }

void MascotStage::sale() { setState(State::cheer); }

void MascotStage::wakeUp() {
    if (wing_ && wing_->state == State::sleep) {
        wing_ = {State::wake, scheduler_.now()};
        observers_.notify();
    }
}

void MascotStage::fellSilent() {
    if (wing_ && wing_->state != State::sleep) {
        wing_ = {State::sleep, scheduler_.now()};
        observers_.notify();
    }
}

void MascotStage::enter(State state) {
    const Date now = scheduler_.now();
    const double x = floor_.position(now, floorLength_);
    floor_ = {{state, now}, x, x, floor_.facesLeft};
    if (state == State::walk) {
        walkSomewhere();
        ++walks_;
    } else if (state != State::idle) {
        walks_ = 0;
    }
    scheduleNext();
    observers_.notify();
}

/// A performance ends; a walk arrives; of idleness a walk comes, or sleep at night, while somebody can see it.
void MascotStage::scheduleNext() {
    next_.cancel();
    if (!roams_) {
        return;
    }
    if (const auto performance = MascotMotion::duration(floor_.state)) {
        next_ = scheduler_.after(*performance - (scheduler_.now() - floor_.since), [this] { enter(State::idle); });
    } else if (floor_.state == State::walk) {
        next_ = scheduler_.after(walkLength(std::abs(floor_.goal - floor_.x), floorLength_), [this] {
            floor_.x = floor_.goal;
            enter(State::idle);
        });
    } else if (isFloorShown_) {
        const int times = 1 << std::min(walks_, doublings);
        const Seconds rest = times * Seconds{between(shortestRest.count(), longestRest.count())};
        next_ = scheduler_.after(isNight() ? timeToNod : rest, [this] { chooseNext(); });
    }
}

void MascotStage::chooseNext() {
    if (floor_.state != State::sleep) {
        enter(isNight() ? State::sleep : State::walk);
    } else if (isNight()) {
        scheduleNext();
    } else {
        enter(State::wake);
    }
}

void MascotStage::walkSomewhere() {
    const double room = 1 - 2 * edge;
    double goal = edge + between(0, room);
    if (std::abs(goal - floor_.x) < shortestWalk) {
        goal += goal < 0.5 ? room / 2 : -room / 2;
    }
    floor_.goal = goal;
    floor_.facesLeft = goal < floor_.x;
}

/// The hours of the sleeping wing.
bool MascotStage::isNight() const {
    const int hour = localTime(scheduler_.now()).hour;
    return hour == 23 || hour < 5;
}

double MascotStage::between(double least, double most) {
    return std::uniform_real_distribution<double>{least, most}(random_);
}

} // namespace kippo
