#pragma once

#include "Platform/Linux/X11IdleTime.h"
#include "Platform/Qt/MutterIdleTime.h"
#include "Platform/Qt/QtSessionBus.h"

namespace kippo {

/// Asks whoever knows on this desktop: the X server, else GNOME's compositor.
class DesktopIdleTime final : public IdleTime {
public:
    explicit DesktopIdleTime(Scheduler& scheduler) {
        if (!x11_.isAvailable()) {
            mutter_.emplace(scheduler, QtSessionBus::connection());
        }
    }

    std::optional<Seconds> sinceLastInput() override {
        return mutter_ ? mutter_->sinceLastInput() : x11_.sinceLastInput();
    }

private:
    X11IdleTime x11_;
    std::optional<MutterIdleTime> mutter_; ///< where there is no X server to ask
};

} // namespace kippo
