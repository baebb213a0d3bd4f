#pragma once

#include "Notch/Geometry.h"
#include "Support/Observers.h"

namespace kippo {

/// Knows where a film, a game or another full-screen window is to be seen. Abstract because every desktop tells it in
/// its own way; the real one is X11FullScreenWatcher.
class FullScreenWatcher {
public:
    virtual ~FullScreenWatcher() = default;
    /// Whether a full-screen window is the uppermost one on the screen whose upper left corner is at `corner` on the
    /// desktop. False where the desktop does not tell.
    virtual bool fillsScreenAt(Point corner) const = 0;
    /// Calls back on the main queue after such a window may have come or gone.
    [[nodiscard]] virtual Subscription observe(std::function<void()> callback) = 0;
};

} // namespace kippo
