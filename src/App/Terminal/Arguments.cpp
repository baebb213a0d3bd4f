#include "App/Terminal/Arguments.h"

#include "App/Terminal/TerminalText.h"

#include <optional>
#include <string_view>

namespace kippo::Terminal {

namespace {

using Command = Arguments::Command;

Arguments wrong(std::string_view problem, std::string_view word) {
    return {Command::wrong, false,
            "kippo: " + std::string{problem} + " “" + plainText(word) + "”. See “kippo --help”."};
}

std::optional<Command> commandNamed(std::string_view word) {
    if (word == "status") {
        return Command::status;
    }
    if (word == "watch") {
        return Command::watch;
    }
    if (word == "--help" || word == "-h") {
        return Command::help;
    }
    if (word == "--version") {
        return Command::version;
    }
    return std::nullopt;
}

} // namespace

Arguments parseArguments(std::span<char* const> arguments) {
    Arguments result;
    for (const std::string_view word : arguments.subspan(arguments.empty() ? 0 : 1)) {
        if (word == "--help" || word == "-h") {
            return {Command::help, false, {}};
        }
        const bool lists = result.command == Command::status || result.command == Command::watch;
        if (lists) {
            if (word != "--json") {
                return wrong("I do not know", word);
            }
            result.json = true;
            continue;
        }
        if (result.command != Command::start) {
            // What follows a flag of the application is the application's as well.
            continue;
        }
        if (const auto command = commandNamed(word)) {
            result.command = *command;
        } else if (word == "--json") {
            return wrong("only “status” and “watch” take", word);
        } else if (word.starts_with('-')) {
            result.command = Command::application;
        } else {
            return wrong("I do not know", word);
        }
    }
    return result;
}

std::string helpText() {
    return "Kippo shows which coding agents on this machine work, need you, or are done.\n"
           "\n"
           "  kippo                  start the panel; without a display, show the list here\n"
           "  kippo status           print the list once\n"
           "  kippo status --json    the same as one JSON object\n"
           "  kippo watch            keep the list current in this terminal; q quits\n"
           "  kippo watch --json     one JSON object a line, at each change; for status bars\n"
           "  kippo --demo           start the panel on sample sessions\n"
           "  kippo --help           print this\n"
           "  kippo --version        print the version\n"
           "\n"
           "Agents run “kippo --kippo-hook” to report what they do; it is nothing to type.\n";
}

std::string versionText() { return "kippo " KIPPO_VERSION "\n"; }

} // namespace kippo::Terminal
