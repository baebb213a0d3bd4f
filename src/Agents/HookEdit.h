#pragma once

#include "Agents/AgentModels.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The edits of an agent's hook settings, from text to text. They are splices: what is not Kippo's keeps its bytes. A
/// text written on one line is laid out anew, with its strings and numbers as they were. Everything gives nothing for a
/// text that is no plain JSON object, or whose hooks are not where they belong.
namespace kippo::HookEdit {

/// With one right entry of Kippo in the list of each event that is hooked, and none elsewhere. An entry that is right
/// already is not touched, a wrong one replaced in its place, a new one put at its list's end.
std::optional<std::string> installed(std::string_view text, HookAgent agent, std::string_view command);

/// Without any entry of Kippo. Lists that lose their last entry go, and "hooks" if it loses its last list, unless
/// `original`, the text from before the first install, has them too. When `text` is what an install made of `original`
/// and nothing else, the outcome is `original` itself.
std::optional<std::string> uninstalled(std::string_view text, HookAgent agent,
                                       std::optional<std::string_view> original);

/// The commands of Kippo's entries, by event, in their order.
std::optional<std::map<std::string, std::vector<std::string>>> commands(std::string_view text, HookAgent agent);

} // namespace kippo::HookEdit
