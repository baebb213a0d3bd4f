#pragma once

#include "Support/Observers.h"
#include "Support/Scheduler.h"
#include "Support/Sounds.h"

#include <array>
#include <functional>
#include <optional>
#include <string_view>

namespace kippo {

/// How the drawn figure stands: angles in degrees from its rest, offsets in parts of its height.
struct FigurePose {
    double headTilt = 0;
    double shoulderLift = 0;
    double shoulderWidth = 0;
    double torsoLean = 0;
    double leftArm = 0;
    double leftForearm = 0;
    double leftWrist = 0;
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
    FigurePose (*motion)(Seconds elapsed) = nullptr;
};

namespace StretchRoutine {
extern const std::array<StretchPose, 5> poses;
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

    void start();
    void next();
    void previous();
    void end();

    std::function<void()> onEnd;
    [[nodiscard]] Subscription observe(std::function<void()> callback) { return observers_.add(std::move(callback)); }

private:
    void tick();

    Scheduler& scheduler_;
    Sounds& sounds_;
    Observers observers_;
    std::optional<int> index_;
    Date poseStartedAt_ = distantPast;
    bool isFinished_ = false;
    Timer timer_;
};

} // namespace kippo
