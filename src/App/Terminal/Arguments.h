#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What `kippo` does in a terminal.
namespace kippo::Terminal {

/// What was typed behind a command's name. The texts are the program's arguments.
struct Request {
    std::vector<std::string_view> words; ///< in their order, the options left out
    std::vector<std::string_view> options;

    bool has(std::string_view option) const;
    bool operator==(const Request&) const = default;
};

/// A command, as the table of commands has it.
struct Command {
    std::string_view name;
    std::string_view options{}; ///< those that it takes, separated by blanks
    bool takesWords = false;
    std::string_view usage{}; ///< its lines of `kippo --help`
    std::string_view help{};  ///< what `kippo NAME --help` prints; where there is none that prints all commands
    /// Does it and gives the exit status. Which words there may be the command says itself.
    int (*run)(const Request&) = nullptr;
};

/// A command line, understood.
struct Arguments {
    enum class Kind {
        start, ///< no word: the panel, or the list where there is none
        command,
        help,
        version,
        application, ///< flags that only the application knows
        wrong
    };

    Kind kind = Kind::start;
    const Command* command = nullptr; ///< of `command`, and of `help` for one command
    Request request{};                ///< of `command`
    std::string complaint{};          ///< of `wrong`: one line for the user, without line feed

    bool operator==(const Arguments&) const = default;
};

/// Reads the command line; `arguments[0]`, the program's name, is skipped. The result points into both.
Arguments parseArguments(std::span<char* const> arguments, std::span<const Command> commands);

/// One line for the user about a word that nobody knows, without line feed. The word may hold anything.
std::string unknownWord(std::string_view word);

/// The text of `kippo --help`.
std::string helpText(std::span<const Command> commands);

/// The text of `kippo --version`.
std::string versionText();

} // namespace kippo::Terminal
