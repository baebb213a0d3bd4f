#include "App/Terminal/HooksCommand.h"

#include "Agents/HookBridge.h"
#include "App/Terminal/HookFacts.h"
#include "App/Terminal/LogFacts.h"
#include "App/Terminal/Output.h"
#include "App/Terminal/TerminalText.h"
#include "Platform/Linux/Installation.h"
#include "Platform/Linux/JsonUserDefaults.h"
#include "Platform/Posix/PosixUserFiles.h"
#include "Support/Places.h"
#include "Support/Text.h"
#include "Support/TextDiff.h"

#include <algorithm>
#include <chrono>
#include <fmt/format.h>
#include <optional>

namespace kippo::Terminal {

namespace {

using Verb = HooksRequest::Verb;

std::optional<Verb> verbNamed(std::string_view word) {
    if (word == "install") {
        return Verb::install;
    }
    if (word == "remove") {
        return Verb::remove;
    }
    return word == "prompt" ? std::optional{Verb::prompt} : std::nullopt;
}

std::string_view title(HookAgent agent) { return displayTitle(agentKind(agent)); }

/// The machine, as this command needs it.
struct Hooks {
    Places places = Places::fromEnvironment();
    Date now = std::chrono::system_clock::now();
    PosixUserFiles files;
    HookBridge::SettingsHome home{files, places.home};
    std::string executable = Installation::executablePath();

    std::vector<HookFacts> facts() {
        const JsonUserDefaults defaults{places.configFolder + "/defaults.json", JsonUserDefaults::Access::readOnly};
        return hookFacts(home, lastEvents(logFacts(places.eventLog(), now), defaults, now));
    }

    /// The agents that are meant where none is named: to connect those that are here, to disconnect all of them.
    std::vector<HookAgent> meant(Verb verb) {
        std::vector<HookAgent> agents;
        for (const auto& facts : facts()) {
            if (verb == Verb::remove || facts.isPresent) {
                agents.push_back(facts.agent);
            }
        }
        return agents;
    }

    std::expected<HookBridge::Change, HookBridge::InstallError> change(HookAgent agent, const HooksRequest& request) {
        if (request.verb == Verb::install) {
            return request.isDryRun ? HookBridge::plannedInstall(home, agent, executable)
                                    : HookBridge::install(home, agent, executable);
        }
        auto removed =
            request.isDryRun ? HookBridge::plannedUninstall(home, agent) : HookBridge::uninstall(home, agent);
        if (!removed && holdsNothingOfOurs(agent)) {
            return HookBridge::Change{.file = home.settingsFile(agent), .before = {}, .after = {}, .existed = true};
        }
        return removed;
    }

    /// Of a file that cannot be edited, but need not be either.
    bool holdsNothingOfOurs(HookAgent agent) {
        const auto text = files.read(home.settingsFile(agent));
        return text &&
               (!*text || (!(*text)->contains(HookBridge::hookFlag) && !(*text)->contains(HookBridge::legacyHookFlag)));
    }
};

/// Into a pipe byte for byte, so that `patch` takes it; on a terminal harmless and in colours.
std::string diffText(const HookBridge::Change& change, const Style& style) {
    auto diff = unifiedDiff(change.before, change.after, change.existed ? change.file : "/dev/null", change.file);
    if (!style.colour) {
        return diff;
    }
    std::string text;
    for (const auto line : Text::split(diff, '\n')) {
        const bool isHeading = line.starts_with("---") || line.starts_with("+++") || line.starts_with('@');
        const Tone tone = isHeading               ? Tone::faint
                          : line.starts_with('+') ? Tone::done
                          : line.starts_with('-') ? Tone::bad
                                                  : Tone::plain;
        text += toned(visibleText(line), tone, style) + "\n";
    }
    return text;
}

/// One sentence or two about what was done; `request` was carried out without error.
std::string outcome(const Hooks& hooks, HookAgent agent, const HookBridge::Change& change, Verb verb) {
    const auto file = tilde(change.file, hooks.places.home);
    if (verb == Verb::install) {
        return change.isNeeded() ? fmt::format("{}: connected through {}. {}\n", title(agent), file,
                                               HookBridge::afterConnecting(agent))
                                 : fmt::format("{}: was connected already.\n", title(agent));
    }
    return change.isNeeded() ? fmt::format("{}: disconnected; {} has no entry of Kippo any more.\n", title(agent), file)
                             : fmt::format("{}: was not connected.\n", title(agent));
}

int edit(Hooks& hooks, HooksRequest request) {
    if (request.agents.empty()) {
        request.agents = hooks.meant(request.verb);
    }
    if (request.agents.empty()) {
        complain("kippo: there is no agent here that could be connected. Name one to connect it all the same, as in "
                 "“kippo hooks install claude”.");
        return failed;
    }
    int status = succeeded;
    bool isAnyConnected = false;
    for (const auto agent : request.agents) {
        const auto change = hooks.change(agent, request);
        if (!change) {
            complain("kippo: " + plainText(change.error().description()));
            status = failed;
        } else if (!request.isDryRun) {
            print(outcome(hooks, agent, *change, request.verb));
            isAnyConnected = isAnyConnected || request.verb == Verb::install;
        } else if (change->isNeeded()) {
            print(diffText(*change, outputStyle()));
        } else {
            complain(fmt::format("kippo: {} would stay as it is.", plainText(tilde(change->file, hooks.places.home))));
        }
    }
    if (isAnyConnected && Installation::isInBuildTree(hooks.executable)) {
        print(
            fmt::format("The hooks start {}, which lies in a build tree: “kippo hooks remove” before you delete it.\n",
                        plainText(hooks.executable)));
    }
    return status;
}

} // namespace

std::expected<HooksRequest, std::string> parseHooks(const Request& request) {
    HooksRequest result{.isDryRun = request.has("--dry-run"), .json = request.has("--json")};
    for (const auto& word : request.words) {
        const auto agent = hookAgentFromRaw(word);
        if (&word == &request.words.front()) {
            const auto verb = verbNamed(word);
            if (!verb) {
                return std::unexpected{unknownWord(word)};
            }
            result.verb = *verb;
        } else if (!agent) {
            return std::unexpected{"kippo: I know no agent “" + plainText(word) +
                                   "” that has hooks. There are claude, codex, cursor and gemini."};
        } else {
            result.agents.push_back(*agent);
        }
    }
    std::ranges::sort(result.agents);
    const auto repeated = std::ranges::unique(result.agents);
    result.agents.erase(repeated.begin(), repeated.end());
    const bool isEdit = result.verb == Verb::install || result.verb == Verb::remove;
    if (result.isDryRun && !isEdit) {
        return std::unexpected{"kippo: “--dry-run” goes with “install” and “remove”. See “kippo hooks --help”."};
    }
    if (result.json && result.verb != Verb::show) {
        return std::unexpected{"kippo: “--json” goes with “kippo hooks” alone. See “kippo hooks --help”."};
    }
    if (result.verb == Verb::prompt && result.agents.size() != 1) {
        return std::unexpected{"kippo: “prompt” takes one agent. See “kippo hooks --help”."};
    }
    return result;
}

int hooks(const Request& request) {
    const auto parsed = parseHooks(request);
    if (!parsed) {
        complain(parsed.error());
        return usageError;
    }
    Hooks machine;
    if (machine.places.home.empty()) {
        complain(noHome);
        return failed;
    }
    switch (parsed->verb) {
    case Verb::install:
    case Verb::remove:
        return edit(machine, *parsed);
    case Verb::prompt:
        print(HookBridge::setupPrompt(machine.home, parsed->agents.front(), machine.executable));
        return succeeded;
    case Verb::show:
        break;
    }
    const auto facts = machine.facts();
    print(parsed->json ? hookJson(facts, machine.executable) + "\n"
                       : hookTable(facts, machine.executable, machine.places.home, machine.now, outputStyle()));
    return succeeded;
}

} // namespace kippo::Terminal
