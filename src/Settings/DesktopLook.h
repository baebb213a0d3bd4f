#pragma once

#include "Support/Observers.h"

namespace kippo {

/// The look that the person chose for the desktop. Abstract because every platform asks another service for it; the
/// real one is QtDesktopLook.
class DesktopLook {
public:
    virtual ~DesktopLook() = default;
    virtual bool isDark() const = 0;
    /// Calls back on the main queue after it changed.
    [[nodiscard]] virtual Subscription observe(std::function<void()> callback) = 0;
};

} // namespace kippo
