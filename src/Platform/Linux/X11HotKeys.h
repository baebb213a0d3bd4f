#pragma once

#include "Platform/Linux/X11Keyboard.h"
#include "Platform/Linux/X11Server.h"
#include "Support/HotKeys.h"

#include <map>
#include <memory>
#include <set>
#include <vector>

namespace kippo {

/// Grabs keys of an X server, whatever its lock keys say; the grabs follow the letters when the layout changes. Whoever
/// owns it calls `dispatch` when `descriptor` can be read. It has a connection of its own.
class X11HotKeys final : public HotKeys {
public:
    /// Takes the server that the environment names. Without one, and under Wayland, every grab is `unsupported`.
    X11HotKeys();
    ~X11HotKeys() override = default;
    X11HotKeys(const X11HotKeys&) = delete;
    X11HotKeys& operator=(const X11HotKeys&) = delete;

    [[nodiscard]] std::expected<Subscription, Error> grab(HotKeyCombination keys,
                                                          std::function<void()> pressed) override;

    /// Readable when something happened; -1 when there is no server.
    int descriptor() const;
    /// Reads what happened and calls back for each press. False when the server is gone.
    bool dispatch();

private:
    struct Grab {
        std::shared_ptr<std::function<void()>> pressed;
        xcb_keycode_t key = 0; ///< 0 while no key carries the letter or another program holds that key
    };

    bool listen();
    void follow();
    void release(char letter);
    std::expected<void, Error> grabKey(xcb_keycode_t key);
    void releaseKey(const X11Keyboard& keyboard, xcb_keycode_t key);
    /// Adds the letter whose key was pressed, unless the key only repeats.
    void takePress(xcb_keycode_t key, std::vector<char>& letters);

    X11::Desktop server_; ///< without a connection when there is none to use
    std::uint8_t keyboardEvent_ = 0;
    X11Keyboard keyboard_;
    std::map<char, Grab> grabs_;
    std::set<xcb_keycode_t> down_;
    /// Held weakly by subscriptions, which may outlive this object.
    std::shared_ptr<X11HotKeys*> self_ = std::make_shared<X11HotKeys*>(this);
};

} // namespace kippo
