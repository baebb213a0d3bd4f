#pragma once

#include "App/Terminal/TextTable.h"

#include <string_view>

namespace kippo::Terminal {

/// The exit statuses of all commands.
inline constexpr int succeeded = 0;
inline constexpr int failed = 1;     ///< something could not be done, or is not well
inline constexpr int usageError = 2; ///< a word that Kippo does not know

/// What a command says that needs a home folder and has none.
inline constexpr std::string_view noHome = "kippo: HOME is not set, so there is no telling where your files are.";

/// Prints to standard output.
void print(std::string_view text);
/// Prints a line, without its line feed, to standard error.
void complain(std::string_view line);
/// How wide and whether in colours standard output may be written.
Style outputStyle();

/// Says on a terminal what takes its time, and takes it back when it is over. Silent where nobody looks.
class Progress {
public:
    explicit Progress(std::string_view text);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
};

} // namespace kippo::Terminal
