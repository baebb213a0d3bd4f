#pragma once

#include "Notch/Geometry.h"
#include "Support/Observers.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kippo {

/// One connected screen.
struct Screen {
    std::string name; ///< of its output, such as "eDP-1"
    Rect frame = {};  ///< on the desktop
    double scale = 1; ///< device pixels per logical pixel
    bool isBuiltIn = false;
    bool isPrimary = false;
    double topInset = 0;                      ///< height that the desktop's own bar takes at the top
    std::optional<Size> notch = std::nullopt; ///< of its camera notch, where the platform knows it

    bool operator==(const Screen&) const = default;
};

/// The connected screens. Abstract because they come and go by other people's hands; the real one is QtScreens.
class Screens {
public:
    virtual ~Screens() = default;
    /// In the platform's order; empty while no screen is connected.
    virtual std::vector<Screen> screens() const = 0;
    /// Calls back after a screen came, left or changed.
    [[nodiscard]] virtual Subscription observe(std::function<void()> callback) = 0;
};

/// The screen that the setting "display" means: "builtIn" is the built-in one, else the primary, else the first; any
/// other text is the name of an output, and falls back to "builtIn" while that one is not connected. Null only when
/// there is no screen.
const Screen* chooseScreen(std::span<const Screen> screens, std::string_view display);

} // namespace kippo
