#include "Settings/SetupGuide.h"

#include <fmt/format.h>

namespace kippo {

namespace {

SetupStep connecting(HookAgent agent) {
    const std::string_view path = settingsPath(agent);
    const std::string_view name = path.substr(path.rfind('/') + 1);
    return {"Connect",
            fmt::format("Press Connect. Kippo adds its entries to ~/{} and leaves everything else in that file as it "
                        "is. The file as it was before stays beside it, as {}.kippo-backup.",
                        path, name)};
}

/// What the agent needs before it runs the new hooks.
std::vector<SetupStep> takingUp(HookAgent agent) {
    switch (agent) {
    case HookAgent::claude:
        return {{"Go on as you are",
                 "Claude Code picks the hooks up by itself, also in sessions that are already open. If one stays "
                 "silent, restart it."}};
    case HookAgent::codex:
        return {
            {"Let Codex trust the hooks",
             "Start codex. It asks you once to review the new hooks, and runs none of them before you have accepted "
             "them. You find the same review later under /hooks."},
            {"Start open sessions again", "Sessions that were open before go on without the hooks."}};
    case HookAgent::cursor:
        return {{"Give it a prompt",
                 "Cursor picks the hooks up by itself; if nothing shows here after your next prompt, restart it. Its "
                 "hooks tell what it does and when it is done, but not that it waits for your approval."}};
    case HookAgent::gemini:
        return {{"Start open sessions again", "Sessions that were open before report here once they are restarted."}};
    }
    return {};
}

SetupStep proving(HookAgent agent) {
    return {"See that it works",
            fmt::format("Give {} something to do. Its line here changes to “Connected and heard from just now” with "
                        "the first event that arrives.",
                        displayTitle(agentKind(agent)))};
}

SetupStep undoing(HookAgent agent) {
    if (agent == HookAgent::gemini) {
        return {"Before you uninstall Kippo",
                "Press Disconnect first: Gemini CLI refuses to work when the program of a hook is missing. "
                "“kippo hooks remove” in a terminal does it for all agents at once."};
    }
    return {"To undo it",
            "Disconnect takes Kippo's entries out again and leaves yours. Do so before you uninstall Kippo; "
            "“kippo hooks remove” in a terminal does it for all agents at once."};
}

} // namespace

std::vector<SetupStep> setupGuide(HookAgent agent) {
    std::vector<SetupStep> steps{connecting(agent)};
    for (SetupStep& step : takingUp(agent)) {
        steps.push_back(std::move(step));
    }
    steps.push_back(proving(agent));
    steps.push_back(undoing(agent));
    return steps;
}

} // namespace kippo
