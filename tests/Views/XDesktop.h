#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>
#include <xcb/xcb.h>

namespace kippo {

/// A program that the test started; ended when dropped.
class Child {
public:
    Child() = default;
    /// Runs `command`, found in PATH, with `environment` added to the test's own.
    Child(const std::vector<std::string>& command, const std::vector<std::string>& environment);
    ~Child() { end(); }
    Child(Child&& other) noexcept : pid_(std::exchange(other.pid_, -1)) {}
    Child& operator=(Child&& other) noexcept {
        end();
        pid_ = std::exchange(other.pid_, -1);
        return *this;
    }

    void end();
    pid_t pid() const { return pid_; }

private:
    pid_t pid_ = -1;
};

/// Looks every few milliseconds until `holds`, for at most some seconds. What it last gave.
bool eventually(const std::function<bool()>& holds);
/// Whether `holds` all through `span`.
bool throughout(std::chrono::milliseconds span, const std::function<bool()>& holds);

/// An X server of its own, with a window manager, and a client's view on it: windows, pixels, the pointer, the focus.
class XDesktop {
public:
    /// Null where the X server is not installed.
    static std::unique_ptr<XDesktop> start(int width, int height);
    ~XDesktop();

    std::string display() const { return ":" + std::to_string(number_); }
    /// Runs a program on this desktop.
    Child run(const std::vector<std::string>& command, std::vector<std::string> environment = {}) const;

    /// The atom of a name.
    xcb_atom_t atom(const std::string& name) const;
    /// Whether a compositor has announced itself.
    bool isComposited() const;

    struct Window {
        xcb_window_t id = XCB_NONE;
        int x = 0, y = 0, width = 0, height = 0;
    };
    /// The mapped top-level windows, from the bottom to the top.
    std::vector<Window> windows() const;
    /// The mapped top-level window that lies at the top of the screen and is `width` wide.
    std::optional<Window> windowAtTop(int width) const;
    /// The top-level window in which `window` lies.
    xcb_window_t topLevelOf(xcb_window_t window) const;

    /// The rectangles of a window's region: those that take the pointer, or those that are there at all.
    enum class Region { input, bounding };
    std::vector<xcb_rectangle_t> region(xcb_window_t window, Region region) const;
    /// Width and height of all of that region.
    std::pair<int, int> extent(xcb_window_t window, Region region) const;

    /// A picture of the screen, 0xRRGGBB row by row.
    struct Picture {
        int width = 0;
        std::vector<std::uint32_t> pixels;
        std::uint32_t at(int x, int y) const {
            return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
        }
    };
    Picture picture() const;

    void movePointer(int x, int y) const;
    void click() const;
    xcb_window_t focus() const;
    void raise(xcb_window_t window) const;

    /// A white window over the whole screen. Waits until the window manager has made it so.
    xcb_window_t openFullScreen();
    void close(xcb_window_t window) const;
    /// The button presses that it has had so far.
    int presses();

private:
    XDesktop(int number, Child server);

    int number_;
    Child server_;
    Child windowManager_;
    xcb_connection_t* connection_;
    xcb_screen_t* screen_;
    int presses_ = 0;
};

} // namespace kippo
