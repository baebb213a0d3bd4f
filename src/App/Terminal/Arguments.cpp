#include "App/Terminal/Arguments.h"

#include "App/Terminal/TerminalText.h"
#include "Support/Text.h"

#include <algorithm>

namespace kippo::Terminal {

namespace {

using Kind = Arguments::Kind;

Arguments wrong(std::string complaint) { return {.kind = Kind::wrong, .complaint = std::move(complaint)}; }

bool asksForHelp(std::string_view word) { return word == "--help" || word == "-h"; }

/// What follows the command's name.
Arguments parseRequest(std::span<char* const> words, const Command& command) {
    Arguments result{.kind = Kind::command, .command = &command};
    const auto options = Text::split(command.options, ' ');
    for (const std::string_view word : words) {
        if (asksForHelp(word)) {
            return {.kind = Kind::help, .command = command.help.empty() ? nullptr : &command};
        }
        if (std::ranges::find(options, word) != options.end()) {
            result.request.options.push_back(word);
        } else if (command.takesWords && !word.starts_with('-')) {
            result.request.words.push_back(word);
        } else {
            return wrong(unknownWord(word));
        }
    }
    return result;
}

} // namespace

bool Request::has(std::string_view option) const { return std::ranges::find(options, option) != options.end(); }

Arguments parseArguments(std::span<char* const> arguments, std::span<const Command> commands) {
    if (arguments.size() < 2) {
        return {};
    }
    const std::string_view first = arguments[1];
    const auto rest = arguments.subspan(2);
    const auto command = std::ranges::find(commands, first, &Command::name);
    if (command != commands.end()) {
        return parseRequest(rest, *command);
    }
    if (asksForHelp(first) || std::ranges::any_of(rest, asksForHelp)) {
        return {.kind = Kind::help};
    }
    if (first == "--version") {
        return {.kind = Kind::version};
    }
    if (first == "--json") {
        return wrong("kippo: a command has to come before “--json”. See “kippo --help”.");
    }
    // What follows a flag of the application is the application's as well.
    return first.starts_with('-') ? Arguments{.kind = Kind::application} : wrong(unknownWord(first));
}

std::string unknownWord(std::string_view word) {
    return "kippo: I do not know “" + plainText(word) + "”. See “kippo --help”.";
}

std::string helpText(std::span<const Command> commands) {
    std::string text = "Kippo shows which coding agents on this machine work, need you, or are done.\n"
                       "\n"
                       "  kippo                  start the panel; without a display, show the list here\n";
    for (const auto& command : commands) {
        text += command.usage;
    }
    return text + "  kippo --demo           start the panel on sample sessions\n"
                  "  kippo --help           print this; behind a command, what there is to know of it\n"
                  "  kippo --version        print the version\n"
                  "\n"
                  "Agents run “kippo --kippo-hook” to report what they do; it is nothing to type.\n";
}

std::string versionText() { return "kippo " KIPPO_VERSION "\n"; }

} // namespace kippo::Terminal
