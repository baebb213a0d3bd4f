#include "Notch/NotchMotion.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace kippo {

namespace {

// The feel of the notch. The damping while growing lets the spring pass its target by 2 % of the way.
constexpr double springPeriod = 0.36; ///< seconds of one undamped swing; it has settled after about one
constexpr double growingDamping = 0.78;

// At rest for the eye: nothing of this size shows, even on a screen of scale 2.
constexpr double restDistance = 0.05; ///< logical pixels
constexpr double restSpeed = 1.5;     ///< logical pixels per second

// Content shows when the shape is within these shares of its whole way: from nothing to everything.
constexpr double contentAppears = 0.40;
constexpr double contentIsThere = 0.04;
constexpr double shortestWay = 24; ///< logical pixels that a way counts as at least

constexpr double frequency = 2 * std::numbers::pi / springPeriod;

constexpr std::array values{&NotchShape::width, &NotchShape::height, &NotchShape::topRadius, &NotchShape::bottomRadius};

struct State {
    double distance; ///< from the target
    double velocity;
};

/// The damped spring `x'' = -2 * damping * frequency * x' - frequency^2 * x`, solved.
State critical(State from, double time) {
    const double drive = from.velocity + frequency * from.distance;
    const double decay = std::exp(-frequency * time);
    return {(from.distance + drive * time) * decay, (from.velocity - frequency * drive * time) * decay};
}

State underdamped(State from, double damping, double time) {
    const double rate = damping * frequency;
    const double swing = frequency * std::sqrt(1 - damping * damping);
    const double sine = std::sin(swing * time);
    const double cosine = std::cos(swing * time);
    const double decay = std::exp(-rate * time);
    const double slope = (from.velocity + rate * from.distance) / swing;
    const double distance = decay * (from.distance * cosine + slope * sine);
    return {distance, decay * swing * (slope * cosine - from.distance * sine) - rate * distance};
}

double area(const NotchShape& shape) { return shape.width * shape.height; }

} // namespace

void NotchMotion::setTarget(const NotchShape& target) {
    if (target == target_) {
        return;
    }
    target_ = target;
    isGrowing_ = area(target) > area(shape_);
    isSettled_ = false;
    if (isGrowing_) {
        return;
    }
    // A critically damped spring passes its target once when it comes in faster than this.
    for (const auto value : values) {
        const double distance = shape_.*value - target.*value;
        double& velocity = velocity_.*value;
        if (distance * velocity < 0) {
            const double limit = frequency * std::abs(distance);
            velocity = std::clamp(velocity, -limit, limit);
        } else if (distance == 0) {
            velocity = 0;
        }
    }
}

void NotchMotion::jump(const NotchShape& shape) {
    shape_ = target_ = shape;
    velocity_ = {};
    isSettled_ = true;
}

void NotchMotion::advance(Seconds step) {
    if (isSettled_ || step <= Seconds{0}) {
        return;
    }
    bool atRest = true;
    for (const auto value : values) {
        const State from{shape_.*value - target_.*value, velocity_.*value};
        const State to = isGrowing_ ? underdamped(from, growingDamping, step.count()) : critical(from, step.count());
        shape_.*value = target_.*value + to.distance;
        velocity_.*value = to.velocity;
        atRest = atRest && std::abs(to.distance) < restDistance && std::abs(to.velocity) < restSpeed;
    }
    if (atRest) {
        jump(target_);
    }
}

double contentOpacity(const NotchShape& shape, const NotchShape& goal, const NotchShape& closed) {
    const auto wayLeft = [&](double NotchShape::* value) {
        const double way = std::max(std::abs(goal.*value - closed.*value), shortestWay);
        return std::abs(shape.*value - goal.*value) / way;
    };
    const double left = std::max(wayLeft(&NotchShape::width), wayLeft(&NotchShape::height));
    const double shown = std::clamp((contentAppears - left) / (contentAppears - contentIsThere), 0.0, 1.0);
    return shown * shown * (3 - 2 * shown);
}

} // namespace kippo
