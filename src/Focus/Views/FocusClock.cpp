#include "Focus/Views/FocusClock.h"

#include <algorithm>
#include <cmath>

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
    const Seconds shownLeft{std::ceil(left.count())};
    if (isShown_ && store.isRunning() && shownLeft > Seconds{0}) {
        next_ = focus_->scheduler().after(left - (shownLeft - Seconds{1}), [this] { read(); });
    }
    const double length = store.total().count();
    text_ = QString::fromStdString(FocusStore::clock(left));
    progress_ = length > 0 ? std::clamp(1 - shownLeft.count() / length, 0.0, 1.0) : 0;
    phase_ = focus_->phase();
    isPaused_ = focus_->isPaused();
    emit ticked();
}

} // namespace kippo
