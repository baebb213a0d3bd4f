#pragma once

#include "App/Terminal/TextTable.h"

#include <optional>
#include <string>
#include <string_view>
#include <termios.h>

namespace kippo::Terminal {

/// Whether text written to `descriptor` may be coloured: a terminal that is not dumb, and a user who did not set
/// NO_COLOR.
bool wantsColour(int descriptor);

/// The size of the terminal at `descriptor`; nothing where there is none, or one that does not tell.
struct Size {
    int width = 0;
    int height = 0;
};
std::optional<Size> sizeOf(int descriptor);

/// Takes over a terminal to redraw it in place, on its alternate screen, and gives it back as it was. Keys are read as
/// they are typed and not shown.
class Screen {
public:
    Screen(int input, int output) : input_(input), output_(output) {}
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    ~Screen() { leave(); }

    void enter();
    void leave();
    /// Replaces what is shown by `frame`, whose lines must fit; writes nothing when it is shown already. False when the
    /// terminal is gone.
    bool show(const std::string& frame);
    /// Makes the next `show` write its frame even if it was shown already: the terminal may have lost it.
    void forget() { shown_.clear(); }

private:
    int input_;
    int output_;
    bool entered_ = false;
    std::optional<termios> before_;
    std::string shown_;
};

/// Whether `descriptor` is a pipe; its writing end can be read, so to say, only once its reader is gone.
bool isPipe(int descriptor);

/// Writes all of `text`; false when the reader is gone.
bool writeAll(int descriptor, std::string_view text);

} // namespace kippo::Terminal
