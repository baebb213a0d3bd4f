#pragma once

#include "Mascot/MascotMessage.h"
#include "Support/Time.h"

#include <optional>

namespace kippo {

/// What the mascot does. Each is a little performance that ends standing still; idle and sleep go on from there.
enum class MascotState { idle, walk, catching, cheer, panic, sleep, wake, talk };

/// How the mascot holds himself at one moment. Lengths are hundredths of his height, x to the right as he faces us and
/// y up; angles are degrees, clockwise.
struct MascotPose {
    /// A pair of limbs, as we see them.
    struct Pair {
        double left = 0;
        double right = 0;
        bool operator==(const Pair&) const = default;
    };
    /// Something beside him: a sheet that he catches, a mark over his head.
    struct Thing {
        double x = 0;
        double y = 0;
        double angle = 0;
        double size = 0; ///< 0 for absent, 1 for its own size
        bool operator==(const Thing&) const = default;
    };

    double x = 0;
    double y = 0; ///< off the floor
    double angle = 0;
    double stretch = 0; ///< taller and thinner above 0, squashed below; his volume stays
    double turn = 0;    ///< of the face: -1 to the left, 1 to the right
    double nod = 0;     ///< of the face: down below 0
    Pair ears;          ///< folding outward
    Pair wings;         ///< 0 folded, 1 spread
    Pair raise;         ///< of the wings, degrees upward
    Pair feet;          ///< off the floor
    double stride = 0;  ///< the left foot before the right one
    Pair eyes{1, 1};    ///< 0 closed, 1 open, above 1 wide
    double joy = 0;     ///< 1 has the eyes laugh
    Pair look;          ///< of the pupils: `left` is to the right, `right` is up, each -1 to 1
    double worry = 0;   ///< brows: 1 has them plead
    double smile = 0.6; ///< -1 to 1
    double mouth = 0;   ///< open, 0 to 1
    double blush = 0.6;
    double wrap = 0;  ///< 1 has him wrapped in his wings
    Thing sheet;      ///< the copied clip
    Thing alarm;      ///< an exclamation mark
    Thing sweat;      ///< a drop
    double burst = 0; ///< of confetti: 0 and 1 show none
    double snore = 0; ///< of a letter z that rises: 0 and 1 show none

    bool operator==(const MascotPose&) const = default;

    /// The pose `elapsed` after `state` began, in the mood of what he says.
    static MascotPose at(MascotState state, Seconds elapsed, MascotMessage::Mood mood = MascotMessage::Mood::curious);
    /// Between two poses: `from` at 0, `to` at 1.
    static MascotPose mix(const MascotPose& from, const MascotPose& to, double part);
    /// How he holds himself in `state` once every motion has ended.
    static MascotPose atRest(MascotState state);
    /// The same, seen in a mirror.
    MascotPose mirrored() const;
};

namespace MascotMotion {

/// How long the performance takes; nothing for those that last until something happens.
std::optional<Seconds> duration(MascotState state);

/// How long his pose stays as it is `elapsed` after `state` began: 0 while he moves, nothing when he never moves again.
std::optional<Seconds> stillFor(MascotState state, Seconds elapsed);

/// Whether what moves is but a breath, for which half of a film's pictures do.
bool isSlow(MascotState state, Seconds elapsed);

} // namespace MascotMotion

} // namespace kippo
