#include "App/Terminal/Completion.h"

#include "Agents/AgentModels.h"
#include "Support/Text.h"

#include <algorithm>
#include <vector>

namespace kippo::Terminal {

namespace {

using Words = std::vector<std::string_view>;

/// A line of a help text, such as "  kippo hooks install [AGENT…]    connect the agents".
struct Synopsis {
    Words words; ///< behind the program's name
    std::string_view meaning;
};

constexpr std::string_view start = "  kippo ";
constexpr std::string_view repeated = "…";
// The kinds of words that can be told; others, such as MINUTES, cannot.
constexpr std::string_view agent = "AGENT";
constexpr std::string_view folder = "FOLDER";

std::vector<Synopsis> synopses(std::string_view help) {
    std::vector<Synopsis> found;
    for (const auto line : Text::split(help, '\n')) {
        if (line.starts_with(start)) {
            const auto rest = line.substr(start.size());
            const auto gap = std::min(rest.find("  "), rest.size());
            found.push_back(
                {.words = Text::split(rest.substr(0, gap), ' '), .meaning = Text::trimmed(rest.substr(gap))});
        }
    }
    return found;
}

bool contains(const Words& words, std::string_view word) { return std::ranges::find(words, word) != words.end(); }

bool isOption(std::string_view word) { return word.starts_with('-'); }

/// What kind of word the help names here: "AGENT" of "[AGENT…]"; empty where it has the word itself.
std::string_view kindOf(std::string_view word) {
    word.remove_prefix(word.starts_with('[') ? 1 : 0);
    const auto* const end = std::ranges::find_if_not(word, [](char c) { return c >= 'A' && c <= 'Z'; });
    return word.substr(0, static_cast<std::size_t>(end - word.begin()));
}

/// Whether `typed` may stand where the help has `word`, which may be several: "agents|focus".
bool fits(std::string_view word, std::string_view typed) {
    return word == repeated || !kindOf(word).empty() || contains(Text::split(word, '|'), typed);
}

/// The word of the help that comes next behind those typed; empty when they do not fit or nothing does.
std::string_view nextWord(const Words& help, const Words& typed) {
    std::size_t place = 0;
    for (const auto word : typed) {
        if (place == help.size() || isOption(help[place]) || !fits(help[place], word)) {
            return {};
        }
        place += help[place].contains(repeated) ? 0 : 1;
    }
    place += place < help.size() && help[place] == repeated ? 1 : 0;
    return place < help.size() ? help[place] : std::string_view{};
}

/// Those words that go on as the unfinished one does, each once. Options are for who begins one, or when there are no
/// words.
class Candidates {
public:
    Candidates(Words typed, std::string_view unfinished) : given_(std::move(typed)), unfinished_(unfinished) {}

    void add(std::string_view word, std::string_view meaning) {
        if (word.starts_with(unfinished_) && !contains(given_, word)) {
            given_.push_back(word);
            (isOption(word) ? options_ : words_).append(word).append("\t").append(meaning).append("\n");
        }
    }

    void addAllOf(std::string_view word, std::string_view meaning) {
        const auto kind = kindOf(word);
        if (kind == agent) {
            for (const auto hookAgent : allHookAgents) {
                add(rawValue(hookAgent), displayTitle(agentKind(hookAgent)));
            }
        } else if (kind == folder) {
            words_.append(folderLine).append("\n");
        } else if (kind.empty()) {
            for (const auto choice : Text::split(word, '|')) {
                add(choice, meaning);
            }
        }
    }

    std::string lines() const { return words_.empty() ? options_ : words_; }

private:
    Words given_;
    std::string_view unfinished_;
    std::string words_;
    std::string options_;
};

} // namespace

std::string completions(std::span<const std::string_view> typed, std::span<const Command> commands) {
    if (typed.empty()) {
        return {};
    }
    const Words before{typed.begin(), typed.end() - 1};
    Candidates candidates{before, typed.back()};
    std::string help = helpText(commands);
    if (!before.empty()) {
        const auto command = std::ranges::find(commands, before.front(), &Command::name);
        if (command == commands.end()) {
            return {};
        }
        help = std::string{command->help} + std::string{command->usage};
    }
    Words words = before;
    std::erase_if(words, isOption);
    for (const auto& synopsis : synopses(help)) {
        candidates.addAllOf(nextWord(synopsis.words, words), synopsis.meaning);
    }
    if (!before.empty()) {
        candidates.add("--help", "tell more");
    }
    return candidates.lines();
}

} // namespace kippo::Terminal
