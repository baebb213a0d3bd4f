#include "Mascot/MascotPose.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <initializer_list>
#include <numbers>
#include <span>
#include <utility>

namespace kippo {

namespace {

using Mood = MascotMessage::Mood;

/// A value that is reached at a time of the performance.
struct Key {
    double time;
    double value;
};

double ease(double x) {
    x = std::clamp(x, 0.0, 1.0);
    return x * x * (3 - 2 * x);
}

/// The value at `time`, easing from key to key and resting before the first and after the last.
double track(double time, std::initializer_list<Key> keys) {
    const Key* before = keys.begin();
    for (const Key& key : keys) {
        if (time < key.time) {
            return before == &key ? key.value
                                  : before->value + (key.value - before->value) *
                                                        ease((time - before->time) / (key.time - before->time));
        }
        before = &key;
    }
    return before->value;
}

/// How high a leap is: 0 at its ends, `height` in its middle.
double leap(double time, double start, double end, double height) {
    const double x = (time - start) / (end - start);
    return x <= 0 || x >= 1 ? 0 : 4 * height * x * (1 - x);
}

double wave(double time, double period) { return std::sin(2 * std::numbers::pi * time / period); }

/// A stir out of a standstill, within a rhythm that repeats.
struct Stir {
    enum class Kind { blink, glance, twitch, breath };
    double start;
    double length;
    Kind kind;
};

constexpr double settling = 0.5;

// Uneven, or the eye would learn it and wait for the next; and so far apart that it comes to one picture a second.
constexpr double idleRhythm = 83;
constexpr std::array<Stir, 7> idleStirs{{{6.3, 0.2, Stir::Kind::blink},
                                         {15.1, 0.2, Stir::Kind::blink},
                                         {15.5, 0.2, Stir::Kind::blink},
                                         {27.4, 0.6, Stir::Kind::twitch},
                                         {39.2, 0.2, Stir::Kind::blink},
                                         {52.9, 1.7, Stir::Kind::glance},
                                         {70.6, 0.2, Stir::Kind::blink}}};

constexpr double fallingAsleep = 3.4;
constexpr double sleepRhythm = 48;
constexpr std::array<Stir, 1> sleepStirs{{{10, 3, Stir::Kind::breath}}};

constexpr double catchLength = 1.9;
constexpr double cheerLength = 1.8;
constexpr double panicLength = 2.8;
constexpr double wakeLength = 2.0;
constexpr double talkLength = 1.6;
constexpr double stepLength = 0.46;

void applyIdleStir(MascotPose& pose, Stir::Kind kind, double time) {
    switch (kind) {
    case Stir::Kind::blink: {
        const double open = track(time, {{0, 1}, {0.07, 0}, {0.1, 0}, {0.2, 1}});
        pose.eyes = {open, open};
        break;
    }
    case Stir::Kind::glance:
        pose.look.left = track(time, {{0, 0}, {0.18, -0.9}, {0.7, -0.9}, {0.95, 0.9}, {1.4, 0.9}, {1.7, 0}});
        pose.look.right = track(time, {{0, 0}, {0.18, 0.5}, {1.4, 0.5}, {1.7, 0}});
        pose.turn = 0.4 * track(time, {{0.05, 0}, {0.3, -1}, {0.75, -1}, {1.05, 1}, {1.42, 1}, {1.7, 0}});
        break;
    case Stir::Kind::twitch:
        pose.ears.right = track(time, {{0, 0}, {0.08, 18}, {0.18, -6}, {0.28, 14}, {0.4, -3}, {0.6, 0}});
        break;
    case Stir::Kind::breath:
        break;
    }
}

MascotPose idle(double time) {
    MascotPose pose;
    if (time < settling) {
        pose.stretch = track(time, {{0, 0}, {0.1, -0.06}, {0.24, 0.03}, {0.38, -0.01}, {settling, 0}});
        const double ears = track(time, {{0, 0}, {0.14, 9}, {0.28, -5}, {0.42, 2}, {settling, 0}});
        pose.ears = {ears, ears};
    }
    const double beat = std::fmod(time, idleRhythm);
    for (const Stir& stir : idleStirs) {
        if (beat >= stir.start && beat < stir.start + stir.length) {
            applyIdleStir(pose, stir.kind, beat - stir.start);
        }
    }
    return pose;
}

MascotPose walk(double time) {
    MascotPose pose;
    // He gathers himself before the first step.
    const double go = track(time, {{0.1, 0}, {0.36, 1}});
    const double swing = wave(time - 0.1, 2 * stepLength);
    const double late = wave(time - 0.18, 2 * stepLength);
    pose.turn = track(time, {{0, 0}, {0.2, 1}});
    pose.look.left = 0.5 * pose.turn;
    pose.stretch =
        track(time, {{0, 0}, {0.12, -0.09}, {0.3, 0.02}}) + go * 0.035 * wave(2 * (time - 0.1), 2 * stepLength);
    pose.y = go * 3.5 * std::abs(swing);
    pose.angle = go * (3 + 4 * swing) - track(time, {{0, 0}, {0.12, 5}, {0.3, 0}});
    pose.feet = {go * 9 * std::max(0.0, swing), go * 9 * std::max(0.0, -swing)};
    pose.stride = go * 7 * wave(time - 0.1 - stepLength / 2, 2 * stepLength);
    pose.ears = {go * (6 + 5 * late), go * (-3 + 5 * late)};
    pose.wings = {go * (0.14 + 0.1 * late), go * (0.14 - 0.1 * late)};
    return pose;
}

MascotPose catching(double time) {
    MascotPose pose;
    constexpr double caught = 0.5;
    constexpr double tucked = 1.5;
    pose.stretch = track(time, {{0, 0},
                                {0.2, -0.16},
                                {0.3, 0.14},
                                {0.52, 0.05},
                                {0.7, 0.08},
                                {0.78, -0.17},
                                {0.94, 0.05},
                                {1.06, -0.02},
                                {1.16, 0},
                                {1.5, 0},
                                {1.58, -0.05},
                                {1.74, 0.02},
                                {catchLength, 0}});
    pose.y = leap(time, 0.26, 0.74, 24);
    pose.look.right = track(time, {{0, 0}, {0.12, 1}, {0.5, 1}, {0.75, -0.6}, {1.5, -0.6}, {1.7, 0}});
    pose.nod = track(time, {{0, 0}, {0.14, 3}, {0.5, 3}, {0.8, -1}, {1.4, -1}, {1.7, 0}});
    const double wide = track(time, {{0, 1}, {0.14, 1.16}, {0.55, 1.16}, {0.8, 1}});
    pose.eyes = {wide, wide};
    const double spread = track(time, {{0.2, 0}, {0.36, 0.85}, {0.54, 0.8}, {0.76, 0}});
    pose.wings = {spread, spread};
    const double raise = track(time, {{0, 0}, {0.2, -14}, {0.38, 60}, {0.54, 52}, {0.74, 0}});
    pose.raise = {raise, raise};
    const double ears =
        track(time, {{0, 0}, {0.2, 16}, {0.36, 30}, {0.56, 22}, {0.76, -10}, {0.92, 14}, {1.1, -3}, {1.3, 0}});
    pose.ears = {ears, ears};
    const double feet = track(time, {{0.26, 0}, {0.42, -2}, {0.72, 3}, {0.76, 0}});
    pose.feet = {feet, feet};
    pose.joy = track(time, {{0.7, 0}, {0.86, 1}, {1.55, 1}, {1.75, 0}});
    pose.mouth = track(time, {{0.1, 0}, {0.3, 0.7}, {0.56, 0.8}, {0.8, 0.2}, {1.0, 0}});
    pose.smile = track(time, {{0.3, 0.6}, {0.8, 1}, {1.6, 1}, {catchLength, 0.6}});
    pose.blush = track(time, {{0.6, 0.6}, {0.9, 1}, {1.5, 1}, {catchLength, 0.6}});
    // It sails down, is snatched out of the air, hugged, and tucked under a wing.
    const double hug = track(time, {{0.62, 0}, {0.82, 0.5}, {1.36, 0.5}, {1.6, 0}});
    pose.wrap = hug;
    pose.sheet.size = track(time, {{0, 0}, {0.12, 0.85}, {1.3, 0.85}, {tucked, 0}});
    pose.sheet.x = 9 * track(time, {{0, 1}, {0.24, -0.8}, {caught, 0}}) +
                   track(time, {{caught, 0}, {0.64, 17}, {0.8, 0}, {1.2, 0}, {tucked, 15}});
    pose.sheet.y = track(time, {{0, 138}, {caught, 84}, {caught + 0.06, 80}, {0.78, 20}});
    pose.sheet.angle = track(time, {{0, 26}, {0.24, -20}, {caught, 8}, {0.8, -7}, {1.2, -7}, {tucked, 20}});
    return pose;
}

MascotPose cheer(double time) {
    MascotPose pose;
    pose.stretch = track(time, {{0, 0},
                                {0.2, -0.18},
                                {0.3, 0.16},
                                {0.5, 0.03},
                                {0.66, 0.09},
                                {0.72, -0.17},
                                {0.82, 0.09},
                                {0.94, 0.02},
                                {1.06, 0.05},
                                {1.12, -0.11},
                                {1.28, 0.05},
                                {1.42, -0.02},
                                {1.6, 0}});
    pose.y = leap(time, 0.26, 0.7, 26) + leap(time, 0.79, 1.1, 12);
    pose.angle = track(time, {{0.2, 0}, {0.45, -7}, {0.72, 0}, {0.95, 6}, {1.12, 0}});
    const double spread =
        track(time, {{0, 0}, {0.2, 0.12}, {0.34, 1}, {0.62, 1}, {0.76, 0.7}, {0.9, 1}, {1.1, 0.7}, {1.5, 0}});
    pose.wings = {spread, spread};
    const double raise =
        track(time, {{0, 0}, {0.2, -18}, {0.36, 26}, {0.55, 2}, {0.74, -8}, {0.88, 24}, {1.08, 0}, {1.4, 0}});
    pose.raise = {raise, raise};
    const double ears = track(time, {{0, 0},
                                     {0.2, 14},
                                     {0.36, 26},
                                     {0.58, -8},
                                     {0.74, -12},
                                     {0.9, 18},
                                     {1.08, -8},
                                     {1.22, 10},
                                     {1.4, -4},
                                     {1.6, 0}});
    pose.ears = {ears, ears};
    const double feet = track(time, {{0.26, 0}, {0.4, -2}, {0.66, 3}, {0.72, 0}});
    pose.feet = {feet, feet};
    pose.joy = track(time, {{0.1, 0}, {0.24, 1}, {1.45, 1}, {1.65, 0}});
    pose.mouth = track(time, {{0.15, 0}, {0.32, 1}, {1.1, 0.9}, {1.45, 0}});
    pose.smile = track(time, {{0, 0.6}, {0.3, 1}, {1.5, 1}, {cheerLength, 0.6}});
    pose.blush = track(time, {{0, 0.6}, {0.3, 1}, {1.5, 1}, {cheerLength, 0.6}});
    pose.burst = std::clamp((time - 0.3) / 1.2, 0.0, 1.0);
    return pose;
}

MascotPose panic(double time) {
    MascotPose pose;
    // The start, then from foot to foot, then out of breath.
    const double fuss = track(time, {{0.42, 0}, {0.6, 1}, {1.7, 1}, {2.0, 0}});
    const double swing = wave(time - 0.5, 0.4);
    pose.stretch = track(time, {{0, 0},
                                {0.1, -0.15},
                                {0.2, 0.2},
                                {0.38, 0.08},
                                {0.44, -0.12},
                                {0.6, 0.03},
                                {1.8, 0.03},
                                {2.0, -0.07},
                                {2.2, 0.01},
                                {2.4, -0.04},
                                {2.65, 0}});
    pose.y = leap(time, 0.14, 0.42, 16) + fuss * 5 * std::abs(swing);
    pose.angle = fuss * 6 * swing;
    pose.x = fuss * 3 * swing;
    pose.feet = {fuss * 8 * std::max(0.0, swing), fuss * 8 * std::max(0.0, -swing)};
    const double wide = track(time, {{0, 1}, {0.08, 0.05}, {0.11, 0.05}, {0.2, 1.3}, {1.8, 1.2}, {2.1, 1}});
    pose.eyes = {wide, wide};
    pose.worry = track(time, {{0.1, 0}, {0.22, 1}, {2.3, 1}, {panicLength, 0}});
    const double glance = track(time, {{0.5, 0}, {0.7, -1}, {1.0, -1}, {1.15, 1}, {1.5, 1}, {1.75, 0}});
    pose.look.left = glance;
    pose.turn = 0.7 * glance;
    const double spread = track(time, {{0.08, 0}, {0.2, 0.9}, {0.44, 0.6}, {0.6, 0.85}, {1.75, 0.85}, {2.1, 0}});
    pose.wings = {spread, spread};
    const double flap = fuss * 26 * wave(time, 0.2);
    const double raise = track(time, {{0.08, 0}, {0.2, 34}, {0.46, -8}, {0.6, 8}, {1.75, 8}, {2.05, 0}});
    pose.raise = {raise + flap, raise + flap};
    const double ears =
        track(time, {{0, 0}, {0.1, 34}, {0.22, 4}, {0.5, 16}, {0.7, 28}, {1.7, 28}, {2.2, 38}, {panicLength, 0}});
    pose.ears = {ears, ears};
    pose.smile = track(time, {{0.08, 0.6}, {0.18, -0.7}, {2.3, -0.5}, {panicLength, 0.6}});
    pose.mouth =
        track(time, {{0.1, 0}, {0.2, 0.8}, {0.5, 0.5}, {1.7, 0.55}, {2.0, 0.45}, {2.2, 0.25}, {2.4, 0.35}, {2.6, 0}});
    pose.blush = 0.6 * track(time, {{0.1, 1}, {0.2, 0.2}, {2.2, 0.2}, {panicLength, 1}});
    pose.alarm = {.x = 0,
                  .y = 86 + 72 * pose.stretch + pose.y,
                  .angle = fuss * 5 * wave(time, 0.27),
                  .size = track(time, {{0.14, 0}, {0.26, 1.25}, {0.38, 1}, {1.75, 1}, {1.95, 0}})};
    pose.sweat = {.x = 36,
                  .y = track(time, {{1.8, 66}, {2.7, 44}}),
                  .angle = 0,
                  .size = track(time, {{1.75, 0}, {1.95, 1}, {2.5, 1}, {2.7, 0}})};
    return pose;
}

MascotPose sleep(double time) {
    MascotPose pose;
    const double yawn = track(time, {{0.25, 0}, {0.8, 1}, {1.35, 1}, {1.7, 0}});
    const double gone = track(time, {{2.0, 0}, {2.7, 1}});
    const double beat = std::fmod(time, sleepRhythm) - sleepStirs[0].start;
    const double breath = track(beat, {{0, 0}, {1.2, 1}, {3, 0}});
    // The lids give in, start up once more, and fall.
    const double lids =
        track(time, {{0, 0.9}, {0.5, 0.5}, {0.8, 0}, {1.5, 0}, {1.75, 0.5}, {2.0, 0.35}, {2.35, 0.4}, {2.65, 0}});
    pose.eyes = {lids, lids};
    pose.stretch = 0.06 * yawn - 0.09 * gone + 0.03 * track(time, {{2.7, 0}, {2.9, -1}, {3.2, 0}}) + 0.04 * breath;
    pose.nod = 3 * yawn - 4 * gone + breath;
    pose.angle = track(time, {{1.8, 0}, {2.1, 4}, {2.3, 1}, {2.7, 0}});
    pose.mouth = yawn;
    pose.smile = 0.6 - 0.9 * yawn - 0.25 * gone;
    pose.wings.right = track(time, {{0.5, 0}, {0.85, 0.45}, {1.3, 0.45}, {1.7, 0}});
    pose.wings.left = 0.8 * pose.wings.right;
    pose.raise.right = track(time, {{0.5, 0}, {0.85, 34}, {1.3, 34}, {1.7, 0}});
    pose.raise.left = 0.8 * pose.raise.right;
    pose.wrap = track(time, {{2.0, 0}, {2.8, 1}});
    const double ears = 14 * yawn + 30 * gone + track(time, {{2.7, 0}, {2.95, 6}, {fallingAsleep, 0}});
    pose.ears = {ears, ears};
    pose.blush = 0.6 + 0.3 * gone;
    if (time > fallingAsleep && beat > 0 && beat < sleepStirs[0].length) {
        pose.snore = beat / sleepStirs[0].length;
    }
    return pose;
}

MascotPose wake(double time) {
    MascotPose pose = sleep(fallingAsleep);
    const double up = track(time, {{0.75, 0}, {1.05, 1}});
    const double still = 1 - up;
    // One eye first; then the ears, one after the other; then all of him, with a shake.
    pose.eyes.right = track(time, {{0.15, 0}, {0.4, 0.55}, {0.75, 0.5}, {0.95, 1.2}, {1.3, 1}});
    pose.eyes.left = track(time, {{0.7, 0}, {0.95, 1.2}, {1.3, 1}});
    pose.look.left = track(time, {{0.3, 0}, {0.45, 0.9}, {0.7, 0.9}, {0.9, 0}});
    pose.ears.right = track(time, {{0.25, 30}, {0.42, -6}, {0.6, 4}, {0.75, 0}, {0.95, -8}, {1.15, 6}, {1.5, 0}});
    pose.ears.left = track(time, {{0.6, 30}, {0.8, -6}, {0.95, -8}, {1.15, 6}, {1.5, 0}});
    pose.stretch = track(time, {{0.6, -0.09}, {0.8, -0.15}, {1.0, 0.1}, {1.2, -0.04}, {1.45, 0}});
    const double shake = track(time, {{0.95, 0}, {1.1, 1}, {1.4, 1}, {1.65, 0}});
    pose.angle = 5 * shake * wave(time, 0.16);
    pose.wrap = track(time, {{0.7, 1}, {0.92, 0}});
    const double spread = track(time, {{0.8, 0}, {1.0, 0.55}, {1.35, 0.4}, {1.7, 0}});
    pose.wings = {spread, spread};
    pose.nod *= still;
    pose.smile = track(time, {{0.8, 0.35}, {1.0, -0.1}, {1.6, 0.6}});
    pose.mouth = track(time, {{0.85, 0}, {1.0, 0.35}, {1.35, 0}});
    pose.blush = 0.6 + 0.3 * still;
    return pose;
}

MascotPose talk(double time, Mood mood) {
    MascotPose pose;
    const double in = track(time, {{0, 0}, {0.3, 1}});
    const double words = track(time, {{0.2, 0}, {0.3, 1}, {1.15, 1}, {1.3, 0}});
    pose.mouth = words * (0.35 + 0.3 * wave(time, 0.28) + 0.15 * wave(time, 0.17));
    pose.stretch = track(time, {{0, -0.1}, {0.16, 0.07}, {0.3, -0.02}, {0.42, 0}}) + 0.015 * words * wave(time, 0.28);
    pose.look = {0.6 * in, 0.15 * in};
    pose.turn = 0.45 * in;
    switch (mood) {
    case Mood::curious:
        pose.angle = 6 * track(time, {{0.05, 0}, {0.3, 1.25}, {0.45, 1}});
        pose.ears = {-4 * in, 16 * in};
        pose.wings.right = track(time, {{0.2, 0}, {0.4, 0.5}, {1.0, 0.45}, {1.4, 0}});
        pose.raise.right = track(time, {{0.2, 0}, {0.4, 50}, {0.6, 34}, {0.8, 50}, {1.0, 38}, {1.4, 0}});
        break;
    case Mood::excited: {
        const double spread = track(time, {{0.1, 0}, {0.3, 0.75}, {0.9, 0.7}, {1.4, 0}});
        pose.y = leap(time, 0.08, 0.36, 10) + leap(time, 0.44, 0.68, 6);
        pose.wings = {spread, spread};
        pose.raise = {spread * 30, spread * 30};
        pose.joy = track(time, {{0.1, 0}, {0.25, 1}, {1.2, 1}, {1.45, 0}});
        pose.smile = 0.6 + 0.4 * in;
        pose.blush = 0.6 + 0.3 * in;
        break;
    }
    case Mood::sleepy: {
        const double lids = track(time, {{0, 0.7}, {0.4, 0.55}, {0.75, 0.25}, {0.95, 0.6}, {1.5, 0.55}});
        pose.eyes = {lids, lids};
        pose.ears = {20 * in, 24 * in};
        pose.nod = -1.5 * in;
        pose.smile = 0.2;
        break;
    }
    }
    return pose;
}

// A pose is nothing but numbers, so two of them mix number by number.
using Numbers = std::array<double, sizeof(MascotPose) / sizeof(double)>;

/// How long until the next of `stirs`, which repeat every `rhythm`; 0 during one.
Seconds untilStir(std::span<const Stir> stirs, double rhythm, double time) {
    const double beat = std::fmod(time, rhythm);
    for (const Stir& stir : stirs) {
        if (beat < stir.start + stir.length) {
            return Seconds{std::max(0.0, stir.start - beat)};
        }
    }
    return Seconds{rhythm - beat + stirs.front().start};
}

} // namespace

MascotPose MascotPose::at(MascotState state, Seconds elapsed, Mood mood) {
    const double time = std::max(0.0, elapsed.count());
    switch (state) {
    case MascotState::idle:
        return idle(time);
    case MascotState::walk:
        return walk(time);
    case MascotState::catching:
        return catching(time);
    case MascotState::cheer:
        return cheer(time);
    case MascotState::panic:
        return panic(time);
    case MascotState::sleep:
        return sleep(time);
    case MascotState::wake:
        return wake(time);
    case MascotState::talk:
        return talk(time, mood);
    }
    return {};
}

MascotPose MascotPose::mix(const MascotPose& from, const MascotPose& to, double part) {
    const auto start = std::bit_cast<Numbers>(from);
    auto mixed = std::bit_cast<Numbers>(to);
    for (std::size_t i = 0; i < mixed.size(); ++i) {
        mixed[i] = std::lerp(start[i], mixed[i], part);
    }
    return std::bit_cast<MascotPose>(mixed);
}

MascotPose MascotPose::atRest(MascotState state) {
    switch (state) {
    case MascotState::sleep:
        return sleep(fallingAsleep);
    case MascotState::talk:
        return talk(talkLength, Mood::curious);
    default:
        return idle(settling);
    }
}

MascotPose MascotPose::mirrored() const {
    MascotPose pose = *this;
    for (double* across : {&pose.x, &pose.angle, &pose.turn, &pose.look.left, &pose.sheet.x, &pose.sheet.angle,
                           &pose.alarm.x, &pose.alarm.angle, &pose.sweat.x, &pose.sweat.angle}) {
        *across = -*across;
    }
    for (Pair* pair : {&pose.ears, &pose.wings, &pose.raise, &pose.feet, &pose.eyes}) {
        std::swap(pair->left, pair->right);
    }
    return pose;
}

std::optional<Seconds> MascotMotion::duration(MascotState state) {
    switch (state) {
    case MascotState::catching:
        return Seconds{catchLength};
    case MascotState::cheer:
        return Seconds{cheerLength};
    case MascotState::panic:
        return Seconds{panicLength};
    case MascotState::wake:
        return Seconds{wakeLength};
    case MascotState::talk:
        return Seconds{talkLength};
    case MascotState::idle:
    case MascotState::walk:
    case MascotState::sleep:
        break;
    }
    return {};
}

std::optional<Seconds> MascotMotion::stillFor(MascotState state, Seconds elapsed) {
    const double time = std::max(0.0, elapsed.count());
    switch (state) {
    case MascotState::idle:
        return time < settling ? Seconds{0} : untilStir(idleStirs, idleRhythm, time);
    case MascotState::sleep:
        return time < fallingAsleep ? Seconds{0} : untilStir(sleepStirs, sleepRhythm, time);
    case MascotState::walk:
        return Seconds{0};
    default:
        return elapsed < *duration(state) ? std::optional{Seconds{0}} : std::nullopt;
    }
}

bool MascotMotion::isSlow(MascotState state, Seconds elapsed) {
    return state == MascotState::sleep && elapsed.count() >= fallingAsleep;
}

} // namespace kippo
