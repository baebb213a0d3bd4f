#include "Agents/CommandLine.h"

#include "Support/Text.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <span>
#include <utility>

namespace kippo::CommandLine {

namespace {

/// Enough for an interpreter's options, a script and a sub-command behind a few options of its own.
constexpr std::size_t wordsLookedAt = 32;

template <typename List> bool isOneOf(std::string_view word, const List& list) {
    return std::ranges::find(list, word) != std::ranges::end(list);
}

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> list) {
    return std::ranges::find(list, word) != list.end();
}

/// "python", "python3", "python3.11", "pypy3".
bool isPython(std::string_view name) {
    for (const std::string_view stem : {"python", "pypy"}) {
        if (name.starts_with(stem)) {
            return name.find_first_not_of("0123456789.", stem.size()) == std::string_view::npos;
        }
    }
    return false;
}

Runner runnerNamed(std::string_view name) {
    if (isPython(name) || isOneOf(name, {"node", "nodejs", "tsx", "ts-node"})) {
        return Runner::interpreter;
    }
    if (isOneOf(name, {"bun", "bunx", "deno", "npx", "pnpx", "npm", "pnpm", "yarn", "uv", "uvx", "pipx"})) {
        return Runner::packageRunner;
    }
    if (isOneOf(name, {"sh", "bash", "dash", "zsh", "fish", "perl", "ruby", "php"})) {
        return Runner::shellOrScripter;
    }
    return Runner::none;
}

/// Options whose value is the next word.
bool takesValue(Runner runner, std::string_view option) {
    if (runner == Runner::interpreter) {
        return isOneOf(option, {"-r", "--require", "--import", "--loader", "--experimental-loader", "-C",
                                "--conditions", "-W", "-X"});
    }
    return isOneOf(option, {"-p", "--package", "--from", "--with", "--python", "--cwd", "--prefix", "--dir", "-C",
                            "--config", "-r", "--preload"});
}

/// Options that bring the code along, so that no script follows.
bool bringsCode(Runner runner, std::string_view option) {
    if (isOneOf(option, {"-c", "-e", "--eval", "--call"})) {
        return true;
    }
    return runner == Runner::interpreter && isOneOf(option, {"-p", "--print", "-pe"});
}

/// The index of the word that the runner (word 0) runs, or the number of words.
std::size_t programIndex(Runner runner, std::span<const std::string_view> words) {
    for (std::size_t i = 1; i < words.size(); ++i) {
        const std::string_view word = words[i];
        if (bringsCode(runner, word)) {
            break;
        }
        if (runner != Runner::shellOrScripter && takesValue(runner, word)) {
            ++i;
        } else if (runner == Runner::packageRunner && isOneOf(word, {"run", "x", "exec", "dlx", "tool"})) {
            continue;
        } else if (!word.starts_with('-')) {
            return i;
        }
    }
    return words.size();
}

struct AgentName {
    AgentKind kind;
    std::string_view name;
    std::string_view package;
};

constexpr std::array agents{
    AgentName{AgentKind::claude, "claude", "@anthropic-ai/claude-code"},
    AgentName{AgentKind::codex, "codex", "@openai/codex"},
    AgentName{AgentKind::cursor, "cursor-agent", {}},
    AgentName{AgentKind::gemini, "gemini", "@google/gemini-cli"},
    AgentName{AgentKind::opencode, "opencode", {}},
    AgentName{AgentKind::aider, "aider", {}},
};

/// The package itself or a script of its own, not a package with a longer name nor one that it depends on.
bool isOfPackage(std::string_view word, std::string_view package) {
    const auto at = package.empty() ? std::string_view::npos : word.rfind(package);
    if (at == std::string_view::npos) {
        return false;
    }
    const std::string_view rest = word.substr(at + package.size());
    return (rest.empty() || rest[0] == '/' || rest[0] == '@') && !rest.contains("/node_modules/");
}

/// "codex" of "/usr/bin/codex", "codex@latest" and "codex.js".
std::string bareName(std::string_view program) {
    std::string name = Text::lowered(Text::lastPathComponent(program));
    if (const auto version = name.find('@'); version != std::string::npos && version > 0) {
        name.resize(version);
    }
    for (const std::string_view ending : {".js", ".mjs", ".cjs", ".py"}) {
        if (name.ends_with(ending)) {
            name.resize(name.size() - ending.size());
            break;
        }
    }
    return name;
}

std::optional<AgentKind> agentOf(const Launch& launch) {
    if (launch.runner == Runner::shellOrScripter || launch.program.empty()) {
        return std::nullopt;
    }
    const std::string name = bareName(launch.program);
    for (const auto& agent : agents) {
        if (name == agent.name || (launch.runner != Runner::none && isOfPackage(launch.program, agent.package))) {
            return agent.kind;
        }
    }
    return std::nullopt;
}

/// Options of Codex whose value is the next word; its sub-command may follow them.
bool isCodexValueOption(std::string_view option) {
    return isOneOf(option, {"-c", "--config", "-m", "--model", "-p", "--profile", "-s", "--sandbox", "-a",
                            "--ask-for-approval", "-C", "--cd", "--enable", "--disable", "--add-dir", "--remote"});
}

/// The first word that is no option; for Cursor's launcher, after the script that it names. Empty when there is none.
std::span<const std::string_view> fromSubcommand(AgentKind kind, std::span<const std::string_view> arguments) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (kind == AgentKind::codex && isCodexValueOption(arguments[i])) {
            ++i;
        } else if (!arguments[i].starts_with('-') && !(kind == AgentKind::cursor && arguments[i].ends_with(".js"))) {
            return arguments.subspan(i);
        }
    }
    return {};
}

/// Managing tool servers ("mcp add …") or being one ("mcp serve").
bool isToolServerCommand(std::span<const std::string_view> words) {
    return words[0] == "mcp" &&
           (words.size() == 1 || isOneOf(words[1], {"serve", "add", "add-json", "get", "list", "ls", "login", "logout",
                                                    "remove", "rm", "enable", "disable", "reset-project-choices"}));
}

/// Whether an agent's program runs without a session: as a server or a daemon for others, or to set something up.
/// A request is a plain argument too ("claude update the readme"), so a word that people use counts only when alone.
bool isHelper(AgentKind kind, std::span<const std::string_view> arguments) {
    if (kind == AgentKind::claude && !arguments.empty() && arguments[0].starts_with("--") &&
        (arguments[0].ends_with("-mcp") || arguments[0].ends_with("-native-host"))) {
        return true;
    }
    const auto words = fromSubcommand(kind, arguments);
    if (words.empty()) {
        return false;
    }
    if (isToolServerCommand(words)) {
        return true;
    }
    switch (kind) {
    case AgentKind::codex:
        if (isOneOf(words[0], {"app-server", "mcp-server", "exec-server", "responses-api-proxy", "stdio-to-uds"})) {
            return true;
        }
        break;
    case AgentKind::cursor:
        if (words[0] == "worker-server") {
            return true;
        }
        break;
    case AgentKind::opencode:
        if (isOneOf(words[0], {"serve", "web"})) {
            return true;
        }
        break;
    default:
        break;
    }
    return words.size() == 1 && isOneOf(words[0], {"login", "logout", "update", "upgrade", "install", "doctor",
                                                   "setup-token", "completion"});
}

} // namespace

std::vector<std::string_view> firstWords(std::string_view command, std::size_t limit) {
    std::vector<std::string_view> words;
    while (words.size() < limit) {
        const auto start = command.find_first_not_of(' ');
        if (start == std::string_view::npos) {
            break;
        }
        command.remove_prefix(start);
        words.push_back(command.substr(0, command.find(' ')));
        command.remove_prefix(words.back().size());
    }
    return words;
}

std::string programName(std::string_view command) {
    const auto words = firstWords(command, 1);
    return words.empty() ? std::string{} : Text::lowered(Text::lastPathComponent(words[0]));
}

Launch launch(std::string_view command) {
    const auto words = firstWords(command, wordsLookedAt);
    if (words.empty()) {
        return {};
    }
    Launch launch;
    launch.runner = runnerNamed(Text::lowered(Text::lastPathComponent(words[0])));
    const std::size_t index = launch.runner == Runner::none ? 0 : programIndex(launch.runner, words);
    if (index < words.size()) {
        launch.program = words[index];
        launch.arguments.assign(words.begin() + static_cast<std::ptrdiff_t>(index) + 1, words.end());
    }
    return launch;
}

std::string launchedName(std::string_view command) {
    const Launch launched = launch(command);
    return launched.runner == Runner::interpreter && !launched.program.empty()
               ? Text::lowered(Text::lastPathComponent(launched.program))
               : programName(command);
}

std::optional<AgentKind> sessionOf(const Launch& launch) {
    const auto agent = agentOf(launch);
    return agent && !isHelper(*agent, launch.arguments) ? agent : std::nullopt;
}

bool runsAgent(const Launch& launch) { return agentOf(launch).has_value(); }

} // namespace kippo::CommandLine
