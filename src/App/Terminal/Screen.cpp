#include "App/Terminal/Screen.h"

#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kippo::Terminal {

namespace {

constexpr std::string_view takeOver = "\x1b[?1049h\x1b[?25l"; // the alternate screen, no cursor
constexpr std::string_view giveBack = "\x1b[?25h\x1b[?1049l";

} // namespace

bool wantsColour(int descriptor) {
    const char* noColour = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    const bool dumb = terminal == nullptr || std::string_view{terminal} == "dumb";
    return (noColour == nullptr || *noColour == '\0') && !dumb && isatty(descriptor) == 1;
}

std::optional<Size> sizeOf(int descriptor) {
    winsize size{};
    if (isatty(descriptor) != 1 || ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) {
        return std::nullopt;
    }
    return Size{size.ws_col, size.ws_row};
}

bool isPipe(int descriptor) {
    struct stat state{};
    return fstat(descriptor, &state) == 0 && S_ISFIFO(state.st_mode);
}

bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const auto written = write(descriptor, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return true;
}

void Screen::enter() {
    if (entered_) {
        return;
    }
    termios mode{};
    if (tcgetattr(input_, &mode) == 0) {
        before_ = mode;
        mode.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
        tcsetattr(input_, TCSANOW, &mode);
    }
    entered_ = writeAll(output_, takeOver);
    shown_.clear();
}

void Screen::leave() {
    if (entered_) {
        writeAll(output_, giveBack);
        entered_ = false;
    }
    if (before_) {
        // What was typed meanwhile was meant for this screen, not for the shell behind it.
        tcsetattr(input_, TCSAFLUSH, &*before_);
        before_.reset();
    }
}

bool Screen::show(const std::string& frame) {
    if (frame == shown_) {
        return true;
    }
    // Line by line over the old picture: clearing the screen first would flicker.
    std::string text = "\x1b[H";
    for (const char c : frame) {
        text += c == '\n' ? std::string_view{"\x1b[K\n"} : std::string_view{&c, 1};
    }
    shown_ = frame;
    return writeAll(output_, text + "\x1b[K\x1b[J");
}

} // namespace kippo::Terminal
