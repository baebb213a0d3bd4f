#pragma once

#include "Agents/AgentModels.h"
#include "App/Terminal/Arguments.h"

#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace kippo::Terminal {

/// What `kippo hooks` is asked to do.
struct HooksRequest {
    enum class Verb { show, install, remove, prompt };

    Verb verb = Verb::show;
    std::vector<HookAgent> agents{}; ///< in listing order, each once; none where none was named
    bool isDryRun = false;
    bool json = false;

    bool operator==(const HooksRequest&) const = default;
};

/// The request, or one line for the user about what is wrong with it.
std::expected<HooksRequest, std::string> parseHooks(const Request& request);

/// `kippo hooks`: shows, connects and disconnects the agents' hooks. Gives the exit status.
int hooks(const Request& request);

/// What `kippo hooks --help` prints.
inline constexpr std::string_view hooksHelp =
    "Agents tell Kippo what they do through hooks, which are entries in their own settings. What else is in those\n"
    "files stays as it is, byte for byte; the first change leaves a copy beside the file, named ….kippo-backup.\n"
    "\n"
    "  kippo hooks                     which agents are connected, and whether anything arrived from them\n"
    "  kippo hooks --json              the same as one JSON object\n"
    "  kippo hooks install [AGENT…]    connect the agents, or all that are on this machine\n"
    "  kippo hooks remove [AGENT…]     disconnect the agents, or all; do this before you delete Kippo\n"
    "  kippo hooks … --dry-run         only print what would change, as a diff\n"
    "  kippo hooks prompt AGENT        print a text that asks an AI to connect the agent\n"
    "\n"
    "AGENT is claude, codex, cursor or gemini.\n";

} // namespace kippo::Terminal
