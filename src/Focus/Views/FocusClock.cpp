#include "Focus/Views/FocusClock.h"

#include "Focus/FocusCountdown.h"

#include <algorithm>

namespace kippo {

void FocusClock::setFocus(FocusViewModel* focus) {
    if (focus_ == focus) {
        return;
    }
    if (focus_) {
        focus_->disconnect(this);
    }
    focus_ = focus;
    if (focus_) {
        connect(focus_, &FocusViewModel::changed, this, &FocusClock::read);
    }
    read();
    emit focusChanged();
}

void FocusClock::setShown(bool shown) {
    if (isShown_ != shown) {
        isShown_ = shown;
        read();
        emit shownChanged();
    }
}

void FocusClock::read() {
    next_.cancel();
    if (!focus_ || (lingers_ && focus_->isIdle())) {
        return;
    }
    const FocusStore& store = focus_->store();
    const Seconds left = store.remaining(focus_->scheduler().now());
    const Seconds next = FocusCountdown::untilNextSecond(left);
    if (isShown_ && store.isRunning() && left > Seconds{0}) {
        next_ = focus_->scheduler().after(next, [this] { read(); });
    }
    // As much as the text shows: both move together.
    const Seconds shown = left > Seconds{0} ? left - next + Seconds{1} : left;
    const double length = store.total().count();
    text_ = QString::fromStdString(FocusCountdown::clockText(left));
    progress_ = length > 0 ? std::clamp(1 - shown.count() / length, 0.0, 1.0) : 0;
    phase_ = focus_->phase();
    isPaused_ = focus_->isPaused();
    emit ticked();
}

} // namespace kippo
