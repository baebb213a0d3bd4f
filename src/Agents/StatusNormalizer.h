#pragma once

#include "Agents/HookBridge.h"

/// Turns what hooks report into a session's status, and into the sentence that says what an agent waits for.
namespace kippo::StatusNormalizer {

/// The status after `event`, whose meaning is `meaning`, when it was `before`; nothing when it stays as it is.
std::optional<AgentStatus> afterHook(const HookBridge::Event& event, HookMeaning meaning,
                                     const std::optional<AgentStatus>& before);

/// What to say while an agent asks for permission to use `tool`.
std::string approval(const std::optional<std::string>& tool);

/// An agent's notification as a sentence for the user.
std::string plain(std::string_view message);

} // namespace kippo::StatusNormalizer
