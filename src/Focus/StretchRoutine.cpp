#include "Focus/Stretch.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kippo {

namespace {

constexpr double length = 30;
constexpr double half = length / 2;

/// 0 at `from`, 1 at `to`, and at rest at both.
double eased(double from, double to, double at) {
    const double x = std::clamp((at - from) / (to - from), 0.0, 1.0);
    return x * x * x * (x * (6 * x - 15) + 10);
}

/// Rises to 1 within `ramp` after `from`, stays, and is back at 0 at `to`.
double held(double from, double to, double ramp, double at) {
    return eased(from, from + ramp, at) - eased(to - ramp, to, at);
}

/// -1 in the first half and 1 in the second, 0 at both ends; changes sides round the middle within `ramp`.
double sides(double ramp, double at) { return 2 * eased(half - ramp / 2, half + ramp / 2, at) - 1; }

/// Breathing, from 0 to 1 and back every `period` seconds.
double breath(double period, double at) { return (1 - std::cos(2 * std::numbers::pi * at / period)) / 2; }

FigurePose neckTilts(Seconds elapsed) {
    const double t = elapsed.count();
    const double in = held(0, length, 2, t);
    FigurePose pose;
    pose.headTilt = in * sides(3, t) * (26 + 3 * breath(5, t));
    // The shoulder that the head leaves stays down.
    pose.shoulderLift = -0.006 * in;
    return pose;
}

FigurePose shoulderRolls(Seconds elapsed) {
    const double t = elapsed.count();
    const double in = held(0, length, 1.5, t);
    const double turn = 2 * std::numbers::pi * t / 3;
    FigurePose pose;
    pose.shoulderLift = in * 0.068 * (1 - std::cos(turn)) / 2;
    // Forward on the way up, back on the way down.
    pose.shoulderWidth = -in * 0.022 * std::sin(turn);
    pose.leftArm = pose.rightArm = in * (4 + 5 * breath(3, t));
    pose.leftForearm = pose.rightForearm = -in * 6;
    return pose;
}

FigurePose overheadReach(Seconds elapsed) {
    const double t = elapsed.count();
    const double up = held(0, length, 2.5, t);
    FigurePose pose;
    pose.torsoLean = held(2, length - 2, 2, t) * sides(4, t) * (17 + 2 * breath(5, t));
    // The elbows stay open, so that the hands meet above the head, palms up.
    pose.leftArm = pose.rightArm = up * 164;
    pose.leftForearm = pose.rightForearm = up * 49;
    pose.leftWrist = pose.rightWrist = up * 40;
    pose.shoulderLift = up * (0.032 + 0.006 * breath(5, t));
    pose.shoulderWidth = up * -0.016;
    pose.headTilt = pose.torsoLean * 0.3;
    return pose;
}

/// One arm held out across the chest, and the hand that pulls its fingers.
FigurePose wristAndForearm(Seconds elapsed) {
    const double t = elapsed.count();
    const bool isSecond = t >= half;
    const double within = isSecond ? t - half : t;
    const double in = held(0, half, 1.75, within);
    // Palm forward, fingers back; then palm down.
    const double palm = 1 - 2 * eased(8.25, 10.25, within);
    const double pull = 6 * breath(4, within);
    FigurePose pose;
    pose.headTilt = (isSecond ? -5 : 5) * in;
    (isSecond ? pose.rightArm : pose.leftArm) = in * -50;
    (isSecond ? pose.rightWrist : pose.leftWrist) = in * (-3 - (73 + pull) * palm);
    // The helping hand goes where the fingers are.
    (isSecond ? pose.leftArm : pose.rightArm) = in * (68 + 18 * palm);
    (isSecond ? pose.leftForearm : pose.rightForearm) = in * (-84 - 10 * palm);
    (isSecond ? pose.leftWrist : pose.rightWrist) = in * (-58 - 28 * palm);
    return pose;
}

FigurePose chestOpener(Seconds elapsed) {
    const double t = elapsed.count();
    const double in = held(0, length, 2, t);
    const double open = in * (0.75 + 0.25 * breath(6, t));
    FigurePose pose;
    pose.leftArm = pose.rightArm = open * 98;
    pose.leftForearm = pose.rightForearm = open * 14;
    pose.leftWrist = pose.rightWrist = open * 18;
    pose.shoulderWidth = open * 0.03;
    pose.shoulderLift = open * 0.008;
    return pose;
}

} // namespace

const std::array<StretchPose, 5> StretchRoutine::poses{{
    {.id = 0,
     .name = "Neck tilts",
     .cue = "Drop one ear toward your shoulder and hold. Breathe, then switch sides. Keep your shoulders down.",
     .motion = neckTilts,
     .hasSides = true},
    {.id = 1,
     .name = "Shoulder rolls",
     .cue = "Lift your shoulders up to your ears, roll them back and down. Slow circles.",
     .motion = shoulderRolls},
    {.id = 2,
     .name = "Overhead side reach",
     .cue = "Link your fingers above your head, palms up. Lean gently to one side, then the other.",
     .motion = overheadReach,
     .hasSides = true},
    {.id = 3,
     .name = "Wrist and forearm",
     .cue = "Hold one arm out, palm forward. With the other hand, gently pull the fingers back. Then palm down. Switch "
            "at halfway.",
     .motion = wristAndForearm,
     .hasSides = true},
    {.id = 4,
     .name = "Chest opener",
     .cue = "Open your arms wide, squeeze your shoulder blades together and lift your chest. Undo the laptop hunch.",
     .motion = chestOpener},
}};

Seconds StretchRoutine::stillMoment(Seconds elapsed) {
    constexpr double step = length / 8;
    return Seconds{(std::floor(std::clamp(elapsed.count() / step, 0.0, 7.0)) + 0.5) * step};
}

} // namespace kippo
