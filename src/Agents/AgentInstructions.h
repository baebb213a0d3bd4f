#pragma once

#include "Agents/AgentModels.h"
#include "Support/UserFiles.h"

#include <expected>
#include <optional>
#include <string>
#include <string_view>

/// The block in an agent's own instruction file that asks for a summary line at the end of each turn.
namespace kippo::AgentInstructions {

/// The instruction file, relative to the home folder; nothing for Cursor, which has none.
std::optional<std::string_view> path(HookAgent agent);
/// The block between its markers; begins with an empty line and ends with a line feed.
extern const std::string_view block;
/// Writes the block into the agent's file under `home`, in place of one that is there.
std::expected<void, UserFiles::Error> install(UserFiles& files, const std::string& home, HookAgent agent);
/// Removes it. No write when there is none.
std::expected<void, UserFiles::Error> uninstall(UserFiles& files, const std::string& home, HookAgent agent);
bool isInstalled(UserFiles& files, const std::string& home, HookAgent agent);
/// The text without the first block between the markers, and without one line feed right after it. The text as it is
/// when a marker is missing.
std::string removingBlock(std::string_view text, std::string_view start, std::string_view end);

} // namespace kippo::AgentInstructions
