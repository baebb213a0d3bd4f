#include "Agents/AgentModels.h"
#include "Agents/CommandLine.h"
#include "Support/Text.h"

#include <algorithm>
#include <array>

namespace kippo {

namespace {

constexpr std::array<std::string_view, 7> interpreters{"node", "bun", "deno", "python", "python3", "ruby", "php"};
constexpr std::array<std::string_view, 3> packageManagers{"npm", "pnpm", "yarn"};
constexpr std::array<std::string_view, 18> devTools{"node",     "bun",  "deno",    "python",  "python3", "uvicorn",
                                                    "gunicorn", "ruby", "php",     "esbuild", "vite",    "next-server",
                                                    "turbo",    "tsx",  "ts-node", "npm",     "pnpm",    "yarn"};

template <std::size_t Size> bool isOneOf(std::string_view word, const std::array<std::string_view, Size>& list) {
    return std::ranges::find(list, word) != list.end();
}

/// The words that say what runs: options and scripts come early, whatever a command's length.
constexpr std::size_t nameWords = 48;

/// "next dev" of node's words: the script's name and the next word that is no option.
std::string interpretedName(const std::vector<std::string_view>& words) {
    if (words[1] == "-m") {
        return words.size() > 2 ? std::string{words[2]} : std::string{};
    }
    const auto isArgument = [](std::string_view word) { return !word.starts_with('-'); };
    const auto script = std::find_if(words.begin() + 1, words.end(), isArgument);
    if (script == words.end()) {
        return {};
    }
    std::string name{Text::lastPathComponent(*script)};
    if (const auto next = std::find_if(script + 1, words.end(), isArgument); next != words.end()) {
        name.append(" ").append(*next);
    }
    return name;
}

std::string packageManagerName(std::string_view tool, const std::vector<std::string_view>& words) {
    const auto argument =
        std::find_if(words.begin() + 1, words.end(), [](std::string_view word) { return !word.starts_with('-'); });
    return std::string{tool} + (argument == words.end() ? std::string{} : " " + std::string{*argument});
}

std::string_view firstWordName(std::string_view command) {
    const auto words = CommandLine::firstWords(command, 1);
    return words.empty() ? std::string_view{} : Text::lastPathComponent(words[0]);
}

/// A program inside an application bundle is an agent only under the agent's exact name: the desktop application's own
/// executable is "Claude".
std::optional<AgentKind> classifyBundled(std::string_view command) {
    const std::string_view name = firstWordName(command);
    if (name == "claude") {
        return AgentKind::claude;
    }
    return name == "codex" ? std::optional{AgentKind::codex} : std::nullopt;
}

} // namespace

std::optional<AgentKind> classify(std::string_view command, const std::vector<std::string>& watched) {
    if (command.contains(".app/")) {
        return classifyBundled(command);
    }
    const std::string line = Text::lowered(command);
    const auto words = CommandLine::firstWords(line, 2);
    const std::string_view first = words.empty() ? std::string_view{} : Text::lastPathComponent(words[0]);
    const std::string_view second = words.size() < 2 ? std::string_view{} : Text::lastPathComponent(words[1]);
    const auto names = [&](std::string_view name) { return first == name || second == name; };
    if (names("claude") || line.contains("@anthropic-ai/claude-code")) {
        return AgentKind::claude;
    }
    if (names("codex") || line.contains("@openai/codex")) {
        return AgentKind::codex;
    }
    if (names("cursor-agent")) {
        return AgentKind::cursor;
    }
    if (names("gemini") || line.contains("@google/gemini-cli")) {
        return AgentKind::gemini;
    }
    if (names("opencode")) {
        return AgentKind::opencode;
    }
    if (names("aider") || line.contains("bin/aider")) {
        return AgentKind::aider;
    }
    const bool isWatched = !first.empty() && std::ranges::any_of(watched, [first](const std::string& name) {
        return Text::lowered(name) == first;
    });
    return isWatched ? std::optional{AgentKind::custom} : std::nullopt;
}

std::string ProcInfo::executable() const { return std::string{firstWordName(command)}; }

std::string ProcInfo::friendlyName() const {
    const auto words = CommandLine::firstWords(command, nameWords);
    if (words.empty()) {
        return {};
    }
    const std::string_view program = Text::lastPathComponent(words[0]);
    std::string name;
    if (isOneOf(program, interpreters) && words.size() > 1) {
        name = interpretedName(words);
    } else if (isOneOf(program, packageManagers)) {
        name = packageManagerName(program, words);
    }
    return Text::shortened(name.empty() ? program : std::string_view{name}, 28, 27);
}

bool ProcInfo::isDevTool() const {
    if (isOneOf(Text::lowered(firstWordName(command)), devTools)) {
        return true;
    }
    const std::string line = Text::lowered(command);
    return line.contains("chrome for testing") || line.contains("--headless") || line.contains("playwright") ||
           line.contains("mcp");
}

} // namespace kippo
