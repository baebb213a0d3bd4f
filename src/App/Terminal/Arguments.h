#pragma once

#include <span>
#include <string>

/// What `kippo` does in a terminal.
namespace kippo::Terminal {

/// A command line, understood.
struct Arguments {
    enum class Command {
        start,  ///< no word: the panel, or the list where there is none
        status, ///< the list, once
        watch,  ///< the list, kept current
        help,
        version,
        application, ///< flags that only the application knows
        wrong
    };

    Command command = Command::start;
    bool json = false;
    std::string complaint; ///< for `wrong`: one line for the user, without line feed

    bool operator==(const Arguments&) const = default;
};

/// Reads the command line; `arguments[0]`, the program's name, is skipped.
Arguments parseArguments(std::span<char* const> arguments);

/// The text of `kippo --help`.
std::string helpText();

/// The text of `kippo --version`.
std::string versionText();

} // namespace kippo::Terminal
