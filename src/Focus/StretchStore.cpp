#include "Focus/Stretch.h"

#include <algorithm>

namespace kippo {

namespace {

constexpr Seconds tickInterval{0.5};
constexpr Seconds tickTolerance{0.1};
constexpr int last = static_cast<int>(StretchRoutine::poses.size()) - 1;

} // namespace

const StretchPose* StretchStore::pose() const {
    return index_ && *index_ <= last ? &StretchRoutine::poses[static_cast<std::size_t>(*index_)] : nullptr;
}

void StretchStore::start() {
    timer_ = scheduler_.every(tickInterval, tickTolerance, [this] { tick(); });
    show(0);
}

void StretchStore::tick() {
    const auto* current = pose();
    if (current && scheduler_.now() - poseStartedAt_ >= current->duration) {
        next();
    }
}

void StretchStore::next() {
    if (!index_ || isFinished_) {
        return;
    }
    if (*index_ < last) {
        show(*index_ + 1);
        sounds_.play(Sound::tink);
        return;
    }
    isFinished_ = true;
    timer_.cancel();
    sounds_.play(Sound::glass);
    observers_.notify();
}

void StretchStore::previous() {
    if (!index_) {
        return;
    }
    if (isFinished_) {
        timer_ = scheduler_.every(tickInterval, tickTolerance, [this] { tick(); });
        show(last);
    } else {
        show(std::max(*index_ - 1, 0));
    }
}

void StretchStore::end() {
    if (!index_) {
        return;
    }
    timer_.cancel();
    index_.reset();
    isFinished_ = false;
    if (onEnd) {
        onEnd();
    }
    observers_.notify();
}

void StretchStore::show(int index) {
    index_ = index;
    poseStartedAt_ = scheduler_.now();
    isFinished_ = false;
    observers_.notify();
}

} // namespace kippo
