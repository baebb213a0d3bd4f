#pragma once

#include "Notch/NotchOutline.h"
#include "Support/Time.h"

namespace kippo {

/// How the notch moves. One spring drives the four values of the shape, so they keep step; it is lively while the
/// shape grows and critically damped while it shrinks, so that a close settles without a bounce. A new target keeps the
/// velocity. The motion is solved exactly for any step, so it does not depend on the frame rate.
class NotchMotion {
public:
    explicit NotchMotion(const NotchShape& shape) : shape_(shape), target_(shape) {}

    /// Goes from where it is, at the speed that it has, to `target`.
    void setTarget(const NotchShape& target);
    /// Is at `shape` at once: for the first frame, and where motion is reduced.
    void jump(const NotchShape& shape);
    /// Moves on by `step`. At rest it changes nothing.
    void advance(Seconds step);

    /// Nothing moves, and `shape` is the target to the last bit: no frame need be drawn.
    bool isSettled() const { return isSettled_; }
    const NotchShape& shape() const { return shape_; }
    const NotchShape& target() const { return target_; }

private:
    NotchShape shape_;
    NotchShape velocity_; ///< of each value, in logical pixels per second
    NotchShape target_;
    bool isGrowing_ = false;
    bool isSettled_ = true;
};

/// How visible the content that belongs to the shape `goal` is while the notch has the shape `shape`, 0 to 1. It comes
/// from where the shape is alone: content appears when the shape has gone most of the way from `closed` to its own
/// shape, and is the first to go when the shape leaves it, from wherever the motion is interrupted.
double contentOpacity(const NotchShape& shape, const NotchShape& goal, const NotchShape& closed);

} // namespace kippo
