#include "Agents/AgentSuggestions.h"

#include "Agents/CommandLine.h"

#include <algorithm>
#include <array>

namespace kippo {

namespace {

/// Command-line coding agents by the name of their program. Names that other widespread tools have too are left out.
constexpr std::array<std::string_view, 25> knownAgents{
    "amp",          "auggie",    "cline",     "codebuff", "copilot",  "crush", "droid",     "goose", "gptme",
    "grok",         "iflow",     "junie",     "kilo",     "kilocode", "kimi",  "kiro-cli",  "letta", "mentat",
    "mistral-vibe", "nanocoder", "openhands", "plandex",  "qodo",     "qwen",  "warp-agent"};

} // namespace

std::vector<std::string> agentSuggestions(const ProcessScanner::Snapshot& snapshot,
                                          const AgentPreferences& preferences) {
    std::set<std::string> found;
    for (const auto& [pid, proc] : snapshot.procs) {
        const std::string name = CommandLine::launchedName(proc.command);
        if (std::ranges::find(knownAgents, name) != knownAgents.end() && !preferences.isWatched(name) &&
            !preferences.dismissedSuggestions().contains(name)) {
            found.insert(name);
        }
    }
    return {found.begin(), found.end()};
}

} // namespace kippo
