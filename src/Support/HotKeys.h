#pragma once

#include "Support/Observers.h"

#include <expected>
#include <functional>
#include <string>

namespace kippo {

/// One key with Control and Alt, such as Control+Alt+A.
struct HotKeyCombination {
    char letter = 'A'; ///< 'A' to 'Z', whatever the keyboard's layout and its lock keys say

    bool operator==(const HotKeyCombination&) const = default;
};

/// Grabs keys of the whole desktop. Abstract because each desktop has its own way; the real one is X11HotKeys.
class HotKeys {
public:
    enum class Error {
        takenByAnother, ///< another program holds the combination, or this one does already
        unsupported     ///< this desktop lets no program grab keys, or the keyboard has no such letter
    };

    virtual ~HotKeys() = default;
    /// Calls `pressed` on the main queue at each press, whichever window has the focus; dropping the handle lets the
    /// key go.
    [[nodiscard]] virtual std::expected<Subscription, Error> grab(HotKeyCombination keys,
                                                                  std::function<void()> pressed) = 0;
};

} // namespace kippo
