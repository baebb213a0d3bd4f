#pragma once

#include "Notch/NotchOutline.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>
#include <xcb/xcb.h>

namespace kippo {

/// What the panel needs of the X server and a toolkit does not give: the shape that takes the pointer, staying on top,
/// the pointer anywhere, and the keyboard focus. It has a connection of its own, so that what it listens to does not
/// change what the toolkit hears.
class X11Panel {
public:
    /// Null when there is no X server to talk to.
    static std::unique_ptr<X11Panel> connect();
    ~X11Panel();
    X11Panel(const X11Panel&) = delete;
    X11Panel& operator=(const X11Panel&) = delete;

    /// The window that is the panel. It must exist on the server already.
    void setWindow(xcb_window_t window);
    /// The pixels of the window that take the pointer. Without a compositor nothing else of it is there at all.
    void setShape(std::vector<PixelRect> shape);

    struct PointerState {
        int x = 0; ///< in pixels, from the window's corner
        int y = 0;
        bool isPressed = false;
    };
    /// Nothing when the pointer is where this server does not see it.
    std::optional<PointerState> pointer() const;
    /// The toolkit saw the pointer come over the window, or leave it.
    void setPointerOver(bool over) { isPointerOver_ = over; }
    /// Whether to hear of all motion and all presses, wherever they are.
    void setFollowing(bool follows);

    /// Gives the keyboard to the window, remembering who had it; or gives it back.
    void takeKeyboard();
    void giveBackKeyboard();

    /// Readable when there is something for `processEvents`.
    int fileDescriptor() const;
    /// Reads what happened; tells of many motions once. False when the server is gone.
    bool processEvents();
    /// The same for what came in along with a reply, after which the descriptor is not readable any more: to be called
    /// before waiting.
    void processQueuedEvents();

    std::function<void()> onMoved;
    std::function<void()> onPressed;
    /// Asks to call `checkStacking` again after this time: something insists on being above.
    std::function<void(std::chrono::milliseconds)> onCheckLater;

    /// Goes to the top again where a window that a window manager looks after came above.
    void checkStacking();

private:
    X11Panel(xcb_connection_t* connection, int screen);
    xcb_atom_t atom(const char* name) const;
    void listen();
    void tell();
    void handle(const xcb_generic_event_t& event);
    void readCompositor();
    void applyShape();
    bool isManagedWindowAbove() const;
    bool holdsClient(xcb_window_t window, const std::vector<xcb_window_t>& clients, int depth) const;
    std::vector<xcb_window_t> clients() const;

    using Clock = std::chrono::steady_clock;

    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_NONE;
    xcb_window_t window_ = XCB_NONE;
    xcb_atom_t clientList_ = XCB_NONE;
    xcb_atom_t activeWindow_ = XCB_NONE;
    xcb_atom_t compositor_ = XCB_NONE;
    std::uint8_t fixesEvent_ = 0;
    std::uint8_t inputOpcode_ = 0;
    bool isComposited_ = false;
    bool seesOnlyOwnWindows_ =
        false; ///< the server runs inside of another desktop and knows the pointer over X windows only
    bool isPointerOver_ = false;
    std::vector<PixelRect> shape_;
    xcb_window_t keyboardBefore_ = XCB_NONE;
    std::uint8_t keyboardBeforeReverts_ = XCB_INPUT_FOCUS_NONE;
    bool hasKeyboard_ = false;

    bool moved_ = false;
    bool pressed_ = false;
    bool restacked_ = false;
    int raises_ = 0; ///< in the span that began at `raisesSince_`
    Clock::time_point raisesSince_{};
};

} // namespace kippo
