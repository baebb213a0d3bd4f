#pragma once

#include "Agents/AgentModels.h"
#include "Support/JsonTree.h"

#include <string>
#include <string_view>

/// What one entry of Kippo in an agent's hook settings is like.
namespace kippo::HookEntries {

/// The entry for one event's list, as compact JSON.
std::string json(HookAgent agent, std::string_view event, std::string_view command);

/// A handler whose command carries the hook flag, also the one of the earlier name.
bool isOurs(const Json::Node& handler);
/// Whether a list's entry is a handler of Kippo or a group of nothing but such handlers.
bool isWhollyOurs(const Json::Node& entry);
/// The handlers in a group; none for a plain handler.
const Json::Node* handlers(const Json::Node& entry);
/// Whether the entry does what `json` would do: it holds one handler of Kippo with the same members, perhaps beside the
/// user's, under the same matcher. Members that `json` lacks may be there.
bool isRight(const Json::Node& entry, HookAgent agent, std::string_view event, std::string_view command);

} // namespace kippo::HookEntries
