#pragma once

#include <span>

namespace kippo::Terminal {

/// Runs the command line and gives the exit status: 0, 1 when something could not be done or is not well, 2 for a word
/// that Kippo does not know. The application, where it is asked for and there is one, takes this process's place.
int run(std::span<char* const> arguments);

} // namespace kippo::Terminal
