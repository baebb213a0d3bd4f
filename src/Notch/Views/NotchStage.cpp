#include "Notch/Views/NotchStage.h"

#include <algorithm>
#include <cmath>

namespace kippo {

namespace {

// A frame that comes late, as after a suspend, must not make the shape leap.
constexpr double longestStep = 0.05;

} // namespace

void NotchStage::show(const NotchShapes& shapes, NotchModel::Mode mode) {
    const bool isFirst = shapes_ == NotchShapes{};
    const bool wasMoving = isMoving();
    const bool hasNewGoals = shapes_ != shapes;
    shapes_ = shapes;
    mode_ = mode;
    if (isFirst || isReduced_) {
        motion_.jump(shapes_[mode_]);
    } else {
        motion_.setTarget(shapes_[mode_]);
    }
    if (hasNewGoals) {
        emit goalsChanged();
    }
    follow(wasMoving);
}

void NotchStage::settle() {
    const bool wasMoving = isMoving();
    motion_.jump(motion_.target());
    follow(wasMoving);
}

void NotchStage::advance(double seconds) {
    const bool wasMoving = isMoving();
    motion_.advance(Seconds{std::min(seconds, longestStep)});
    follow(wasMoving);
}

double NotchStage::expandedShoulder() const {
    const NotchShape& shape = shapes_.expanded;
    return std::round(shape.width / 2 - NotchOutline{shape}.halfWidth(shape.height / 2));
}

void NotchStage::setBubble(const QRectF& bubble) {
    if (bubble != bubble_) {
        bubble_ = bubble;
        emit bubbleChanged();
        if (onBubble) {
            onBubble();
        }
    }
}

void NotchStage::follow(bool wasMoving) {
    updateOpacities();
    emit shapeChanged();
    if (wasMoving != isMoving()) {
        emit movingChanged();
    }
}

/// What belongs to another mode than the one that the notch goes to can only fade, or it would flash up on the way.
void NotchStage::updateOpacities() {
    for (const auto mode : {NotchModel::Mode::live, NotchModel::Mode::peek, NotchModel::Mode::expanded}) {
        double& shown = opacities_[static_cast<std::size_t>(mode)];
        const double room = contentOpacity(motion_.shape(), shapes_[mode], shapes_.collapsed);
        shown = mode == mode_ ? room : std::min(shown, room);
    }
}

} // namespace kippo
