#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>
#include <xcb/xcb.h>

namespace kippo {

/// Where letters and modifiers are on the keyboard of an X server, as its layouts have them at the moment.
struct X11Keyboard {
    /// By letter, 'A' to 'Z': the key that carries it in the layout in use, else in the first layout that has it, else
    /// the key in its place on a US keyboard. 0 for one that no key carries.
    std::map<char, xcb_keycode_t> keys;
    std::uint16_t alt = XCB_MOD_MASK_1;  ///< the modifier that Alt is
    std::vector<std::uint16_t> locks{0}; ///< the modifiers of each state of the lock keys, beginning with none

    bool operator==(const X11Keyboard&) const = default;

    /// Nothing when the server does not tell. It must have been asked for its keyboard extension.
    static std::optional<X11Keyboard> read(xcb_connection_t* connection);
};

} // namespace kippo
