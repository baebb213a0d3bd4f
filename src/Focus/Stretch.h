#pragma once

#include "Support/Observers.h"
#include "Support/Scheduler.h"
#include "Support/Sounds.h"

#include <array>
#include <functional>
#include <optional>
#include <string_view>

namespace kippo {

/// How the drawn figure holds itself, as its viewer sees it; all zero is upright with the arms at rest. Angles are in
/// degrees, lengths in parts of the figure's standing height. "Left" is the viewer's left.
struct FigurePose {
    double headTilt = 0;      ///< towards the right shoulder
    double shoulderLift = 0;  ///< upwards
    double shoulderWidth = 0; ///< each shoulder's way out, as the chest opens; negative rounds the back
    double torsoLean = 0;     ///< to the right, from the hips
    double leftArm = 0;       ///< of the upper arm, outwards from hanging down; 180 points up
    double leftForearm = 0;   ///< against the upper arm; positive bends on in the same direction, negative back
    double leftWrist = 0;     ///< against the forearm, as `leftForearm`
    double rightArm = 0;
    double rightForearm = 0;
    double rightWrist = 0;

    bool operator==(const FigurePose&) const = default;
};

/// One stretch of the routine.
struct StretchPose {
    int id = 0; ///< its position, 0 to 4
    std::string_view name;
    std::string_view cue; ///< what to do, shown under the name
    Seconds duration{30};
    FigurePose (*motion)(Seconds elapsed) = nullptr; ///< how the figure stands so long after the start
    bool hasSides = false;                           ///< the first half is for the left side, the second for the right

    /// Whether the second side's turn has come.
    bool isOnSecondSide(Seconds elapsed) const { return hasSides && elapsed >= duration / 2; }
};

namespace StretchRoutine {

extern const std::array<StretchPose, 5> poses;

/// For whom less motion is better: the moment whose picture stands still for all of `elapsed`'s eighth of a stretch.
Seconds stillMoment(Seconds elapsed);

} // namespace StretchRoutine

/// Leads through the five stretches, one after another. Main queue only.
class StretchStore {
public:
    StretchStore(Scheduler& scheduler, Sounds& sounds) : scheduler_(scheduler), sounds_(sounds) {}

    /// The current stretch; nothing when no routine runs.
    std::optional<int> index() const { return index_; }
    const StretchPose* pose() const;
    Date poseStartedAt() const { return poseStartedAt_; }
    /// All five are done, and the closing tip shows.
    bool isFinished() const { return isFinished_; }

    /// Begins with the first stretch, also while a routine runs.
    void start();
    /// On to the next stretch; after the last one, to the closing tip.
    void next();
    /// Back to the stretch before; at the first one, to its beginning.
    void previous();
    /// Closes the routine.
    void end();

    /// The routine was closed.
    std::function<void()> onEnd;
    [[nodiscard]] Subscription observe(std::function<void()> callback) { return observers_.add(std::move(callback)); }

private:
    void tick();
    void show(int index);

    Scheduler& scheduler_;
    Sounds& sounds_;
    Observers observers_;
    std::optional<int> index_;
    Date poseStartedAt_ = distantPast;
    bool isFinished_ = false;
    Timer timer_;
};

} // namespace kippo
