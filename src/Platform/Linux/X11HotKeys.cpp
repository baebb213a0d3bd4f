#include "Platform/Linux/X11HotKeys.h"

#include "Platform/Linux/X11Xkb.h"

#include <optional>
#include <utility>

#include <xkbcommon/xkbcommon-x11.h>

namespace kippo {

namespace {

constexpr auto coreKeyboard = static_cast<xcb_xkb_device_spec_t>(XCB_XKB_ID_USE_CORE_KBD);
/// The first bit of an event's type says that another client sent it.
constexpr unsigned sentByServer = 0x7F;

} // namespace

X11HotKeys::X11HotKeys() : server_(X11::connectToDesktop()) {
    const auto keyboard = server_.connection && listen() ? X11Keyboard::read(server_.connection.get()) : std::nullopt;
    if (keyboard) {
        keyboard_ = *keyboard;
    } else {
        server_.connection.reset();
    }
}

int X11HotKeys::descriptor() const {
    return server_.connection ? xcb_get_file_descriptor(server_.connection.get()) : -1;
}

/// Asks to be told of changes of the keyboard. False when the server cannot.
bool X11HotKeys::listen() {
    xcb_connection_t* server = server_.connection.get();
    if (xkb_x11_setup_xkb_extension(server, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                    XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &keyboardEvent_,
                                    nullptr) == 0) {
        return false;
    }
    constexpr std::uint16_t changes = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t maps =
        XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events(server, coreKeyboard, changes, 0, changes, maps, maps, nullptr);
    // Of the state only the layout in use: every key that is typed changes something of the rest.
    xcb_xkb_select_events_details_t state{};
    state.affectState = XCB_XKB_STATE_PART_GROUP_STATE;
    state.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    xcb_xkb_select_events_aux(server, coreKeyboard, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0, 0, 0, &state);
    // A key that repeats is then not let go of in between.
    constexpr std::uint32_t repeat = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    return X11::ask(server, xcb_xkb_per_client_flags, xcb_xkb_per_client_flags_reply, coreKeyboard, repeat, repeat, 0U,
                    0U, 0U) != nullptr;
}

std::expected<Subscription, HotKeys::Error> X11HotKeys::grab(HotKeyCombination keys, std::function<void()> pressed) {
    const auto found = keyboard_.keys.find(keys.letter);
    if (!server_.connection || found == keyboard_.keys.end() || found->second == 0) {
        return std::unexpected{Error::unsupported};
    }
    if (grabs_.contains(keys.letter)) {
        return std::unexpected{Error::takenByAnother};
    }
    if (const auto done = grabKey(found->second); !done) {
        return std::unexpected{done.error()};
    }
    grabs_[keys.letter] = {std::make_shared<std::function<void()>>(std::move(pressed)), found->second};
    return Subscription{[weak = std::weak_ptr(self_), letter = keys.letter] {
        if (const auto self = weak.lock()) {
            (*self)->release(letter);
        }
    }};
}

std::expected<void, HotKeys::Error> X11HotKeys::grabKey(xcb_keycode_t key) {
    std::vector<xcb_void_cookie_t> requests;
    for (const std::uint16_t lock : keyboard_.locks) {
        const auto modifiers = static_cast<std::uint16_t>(XCB_MOD_MASK_CONTROL | keyboard_.alt | lock);
        requests.push_back(xcb_grab_key_checked(server_.connection.get(), 0, server_.root, modifiers, key,
                                                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    bool isTaken = false;
    for (const xcb_void_cookie_t request : requests) {
        const X11::Owned<xcb_generic_error_t> error{xcb_request_check(server_.connection.get(), request)};
        isTaken = isTaken || error;
    }
    if (isTaken) {
        releaseKey(keyboard_, key);
        return std::unexpected{Error::takenByAnother};
    }
    return {};
}

void X11HotKeys::releaseKey(const X11Keyboard& keyboard, xcb_keycode_t key) {
    for (const std::uint16_t lock : keyboard.locks) {
        const auto modifiers = static_cast<std::uint16_t>(XCB_MOD_MASK_CONTROL | keyboard.alt | lock);
        xcb_ungrab_key(server_.connection.get(), key, server_.root, modifiers);
    }
    xcb_flush(server_.connection.get());
}

void X11HotKeys::release(char letter) {
    if (const auto grab = grabs_.find(letter); grab != grabs_.end()) {
        if (grab->second.key != 0) {
            releaseKey(keyboard_, grab->second.key);
            down_.erase(grab->second.key);
        }
        grabs_.erase(grab);
    }
}

/// Moves the grabs to where the letters are now. A key that another program holds there is tried again at the next
/// change.
void X11HotKeys::follow() {
    const auto now = X11Keyboard::read(server_.connection.get());
    if (!now || *now == keyboard_) {
        return;
    }
    for (const auto& [letter, grab] : grabs_) {
        if (grab.key != 0) {
            releaseKey(keyboard_, grab.key);
        }
    }
    keyboard_ = *now;
    for (auto& [letter, grab] : grabs_) {
        const xcb_keycode_t key = keyboard_.keys[letter];
        grab.key = key != 0 && grabKey(key) ? key : 0;
    }
}

void X11HotKeys::takePress(xcb_keycode_t key, std::vector<char>& letters) {
    for (const auto& [letter, grab] : grabs_) {
        if (grab.key == key && down_.insert(key).second) {
            letters.push_back(letter);
        }
    }
}

bool X11HotKeys::dispatch() {
    if (!server_.connection) {
        return false;
    }
    std::vector<char> letters;
    while (const X11::Owned<xcb_generic_event_t> event{xcb_poll_for_event(server_.connection.get())}) {
        const unsigned type = event->response_type & sentByServer;
        const xcb_keycode_t key = reinterpret_cast<const xcb_key_press_event_t*>(event.get())->detail;
        if (type == XCB_KEY_PRESS) {
            takePress(key, letters);
        } else if (type == XCB_KEY_RELEASE) {
            down_.erase(key);
        } else if (type == keyboardEvent_) {
            follow();
        }
    }
    for (const char letter : letters) {
        // Whoever was called before may have let go of this one.
        if (const auto grab = grabs_.find(letter); grab != grabs_.end()) {
            const auto pressed = grab->second.pressed;
            (*pressed)();
        }
    }
    return xcb_connection_has_error(server_.connection.get()) == 0;
}

} // namespace kippo
