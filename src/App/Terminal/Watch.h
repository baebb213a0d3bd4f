#pragma once

#include <string_view>

namespace kippo::Terminal {

/// Keeps the list current on this terminal until q, Ctrl-C or the terminal's end, with `notice` below it.
int watchScreen(std::string_view notice);

/// Prints the list as one JSON object a line, now and whenever there is news, until the reader goes away.
int watchJson();

} // namespace kippo::Terminal
