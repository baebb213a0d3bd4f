#pragma once

#include "Agents/HookBridge.h"

#include <optional>
#include <string>

namespace kippo {

/// What the hooks have told of one session so far. A value; `apply` is its only rule.
struct HookState {
    /// Why a session needs the user, as far as hooks tell it apart.
    enum class Wait { none, permission, failure };

    HookAgent agent = HookAgent::claude; ///< whose event names hold
    std::optional<std::string> source;   ///< the agent that the hook's command line named, when it was not Claude Code
    Date firstHeard;                     ///< time of the first event
    Date time;                           ///< time of the last event
    Date news;                           ///< time of the last event that told anything new
    Date asserted;                       ///< time of the last event that gave a status
    std::optional<std::string> cwd;      ///< the folder of the last event that named one
    std::optional<std::string> firstCwd; ///< the folder in which it began; agents may move later
    std::optional<AgentStatus> status;
    Wait wait = Wait::none;
    std::optional<std::string> approval; ///< the sentence of the request for permission that stands
    std::optional<AgentActivity> activity;
    std::optional<std::string> prompt; ///< one line
    std::optional<Date> promptTime;
    std::optional<std::string> summary;
    std::optional<std::string> marker; ///< the "Needs you:" text of the last reply
    bool ended = false;                ///< the session's end was reported, and nothing since

    void apply(const HookBridge::Event& event);

private:
    void applyStatus(const HookBridge::Event& event, HookMeaning meaning);
    void keepFacts(const HookBridge::Event& event, HookMeaning meaning);
};

} // namespace kippo
