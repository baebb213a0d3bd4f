#pragma once

#include <optional>
#include <string>

/// What of a desktop is there, asked without Qt and without joining it.
namespace kippo::Desktop {

/// The display that the environment names, such as ":0" or "wayland-0"; a Wayland one first. Nothing when it names
/// none.
std::optional<std::string> displayName();

/// Whether somebody answers at that display. Nothing where it cannot be told: one on another machine.
std::optional<bool> displayAnswers();

/// The address of the session's message bus; nothing when there is none.
std::optional<std::string> busAddress();

/// Whether the system lets this user watch another file; there is a limit to how many all of a user's programs may.
bool canWatchFiles();

} // namespace kippo::Desktop
