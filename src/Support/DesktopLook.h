#pragma once

#include "Support/Observers.h"

#include <cstdint>
#include <optional>

namespace kippo {

/// The look that the person chose for the desktop. Abstract because every platform asks another service for it; the
/// real one is QtDesktopLook.
class DesktopLook {
public:
    virtual ~DesktopLook() = default;
    virtual bool isDark() const = 0;
    /// The desktop's accent colour, 0xRRGGBB; nothing where it has none, or does not tell.
    virtual std::optional<std::uint32_t> accent() const = 0;
    /// Whether the person asked the desktop for less motion; false where it does not tell.
    virtual bool reducesMotion() const { return false; }
    /// Calls back on the main queue after it changed.
    [[nodiscard]] virtual Subscription observe(std::function<void()> callback) = 0;
};

} // namespace kippo
