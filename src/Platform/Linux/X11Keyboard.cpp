#include "Platform/Linux/X11Keyboard.h"

#include "Platform/Linux/X11Server.h"
#include "Platform/Linux/X11Xkb.h"

#include <algorithm>
#include <string>
#include <string_view>

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

namespace kippo {

namespace {

using Context = std::unique_ptr<xkb_context, decltype(&xkb_context_unref)>;
using Keymap = std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)>;

/// The letters as they lie on a US keyboard, row by row, and the names of those rows in keyboard descriptions.
struct Row {
    std::string_view name;
    std::string_view letters;
};
constexpr Row rows[] = {{"AD", "QWERTYUIOP"}, {"AC", "ASDFGHJKL"}, {"AB", "ZXCVBNM"}};

xkb_keycode_t keyInPlace(xkb_keymap* keymap, char letter) {
    for (const Row& row : rows) {
        if (const auto place = row.letters.find(letter); place != std::string_view::npos) {
            const std::string number = std::to_string(place + 1);
            const std::string name = std::string{row.name} + (number.size() < 2 ? "0" : "") + number;
            const xkb_keycode_t key = xkb_keymap_key_by_name(keymap, name.c_str());
            return key != XKB_KEYCODE_INVALID ? key : 0;
        }
    }
    return 0;
}

/// Whether a key gives that symbol by itself.
bool gives(xkb_keymap* keymap, xkb_keycode_t key, xkb_layout_index_t layout, xkb_keysym_t wanted) {
    const xkb_keysym_t* symbols = nullptr;
    return layout < xkb_keymap_num_layouts_for_key(keymap, key) &&
           xkb_keymap_key_get_syms_by_level(keymap, key, layout, 0, &symbols) == 1 && *symbols == wanted;
}

/// 0 when no key of that layout gives the letter by itself.
xkb_keycode_t keyInLayout(xkb_keymap* keymap, xkb_layout_index_t layout, char letter) {
    const auto wanted = static_cast<xkb_keysym_t>(letter - 'A' + XKB_KEY_a);
    for (auto key = xkb_keymap_min_keycode(keymap); key <= xkb_keymap_max_keycode(keymap); ++key) {
        if (gives(keymap, key, layout, wanted)) {
            return key;
        }
    }
    return 0;
}

xkb_keycode_t keyOf(xkb_keymap* keymap, xkb_layout_index_t inUse, char letter) {
    if (const auto key = keyInLayout(keymap, inUse, letter)) {
        return key;
    }
    for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts(keymap); ++layout) {
        if (const auto key = keyInLayout(keymap, layout, letter)) {
            return key;
        }
    }
    return keyInPlace(keymap, letter);
}

/// The modifier that the key with this symbol sets; 0 when none does.
std::uint16_t modifierOf(xkb_keymap* keymap, const xcb_get_modifier_mapping_reply_t& modifiers, xkb_keysym_t symbol) {
    const xcb_keycode_t* keys = xcb_get_modifier_mapping_keycodes(&modifiers);
    for (int i = 0; i < xcb_get_modifier_mapping_keycodes_length(&modifiers); ++i) {
        if (keys[i] != 0 && gives(keymap, keys[i], 0, symbol)) {
            return static_cast<std::uint16_t>(1U << static_cast<unsigned>(i / modifiers.keycodes_per_modifier));
        }
    }
    return 0;
}

} // namespace

std::optional<X11Keyboard> X11Keyboard::read(xcb_connection_t* connection) {
    const Context context{xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref};
    const std::int32_t device = xkb_x11_get_core_keyboard_device_id(connection);
    if (!context || device < 0) {
        return std::nullopt;
    }
    const Keymap keymap{xkb_x11_keymap_new_from_device(context.get(), connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS),
                        xkb_keymap_unref};
    const auto state = X11::ask(connection, xcb_xkb_get_state, xcb_xkb_get_state_reply,
                                static_cast<xcb_xkb_device_spec_t>(XCB_XKB_ID_USE_CORE_KBD));
    const auto modifiers = X11::ask(connection, xcb_get_modifier_mapping, xcb_get_modifier_mapping_reply);
    if (!keymap || !state || !modifiers) {
        return std::nullopt;
    }
    X11Keyboard keyboard;
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        keyboard.keys[letter] = static_cast<xcb_keycode_t>(keyOf(keymap.get(), state->group, letter));
    }
    if (const auto alt = modifierOf(keymap.get(), *modifiers, XKB_KEY_Alt_L)) {
        keyboard.alt = alt;
    }
    for (const std::uint16_t lock :
         {static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK), modifierOf(keymap.get(), *modifiers, XKB_KEY_Num_Lock),
          modifierOf(keymap.get(), *modifiers, XKB_KEY_Scroll_Lock)}) {
        if (lock != 0 && lock != keyboard.alt && std::ranges::find(keyboard.locks, lock) == keyboard.locks.end()) {
            for (std::size_t i = 0, count = keyboard.locks.size(); i < count; ++i) {
                keyboard.locks.push_back(keyboard.locks[i] | lock);
            }
        }
    }
    return keyboard;
}

} // namespace kippo
