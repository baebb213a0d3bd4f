#pragma once

#include <expected>
#include <string>

namespace kippo {

/// Whether the desktop starts Kippo when the person logs in. Abstract because each desktop keeps that in its own way;
/// the real one is XdgLoginItem.
class LoginItem {
public:
    struct Error {
        std::string sentence; ///< for the person, such as "Start at login could not be turned on: Permission denied."
    };

    virtual ~LoginItem() = default;
    /// Asked anew each time: people also change it in the desktop's own settings.
    virtual bool isOn() = 0;
    virtual std::expected<void, Error> set(bool on) = 0;
};

} // namespace kippo
