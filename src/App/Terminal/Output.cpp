#include "App/Terminal/Output.h"

#include "App/Terminal/Screen.h"

#include <string>
#include <unistd.h>

namespace kippo::Terminal {

void print(std::string_view text) { writeAll(STDOUT_FILENO, text); }

void complain(std::string_view line) { writeAll(STDERR_FILENO, std::string{line} + "\n"); }

Progress::Progress(std::string_view text) {
    if (isatty(STDERR_FILENO) == 1) {
        writeAll(STDERR_FILENO, text);
    }
}

Progress::~Progress() {
    if (isatty(STDERR_FILENO) == 1) {
        writeAll(STDERR_FILENO, "\r\x1b[K");
    }
}

Style outputStyle() {
    const auto size = sizeOf(STDOUT_FILENO);
    return {.width = size ? size->width : 0, .colour = wantsColour(STDOUT_FILENO)};
}

} // namespace kippo::Terminal
