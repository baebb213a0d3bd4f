#pragma once

#include "Focus/FocusStore.h"

#include <expected>
#include <string>
#include <string_view>

/// What other programs ask of the timer, in words: the terminal, keys that a desktop binds.
namespace kippo::FocusCommands {

/// Does "state" (nothing), "start", "break", "pause", "resume", "toggle", "skip" or "reset" and gives what then stands,
/// as `json` does; a sentence for the person when there is nothing to do it to. `minutes` is for "start", and 0 for the
/// length that the settings have. A start without minutes lets a focus that runs go on, and takes up one that is
/// paused.
std::expected<std::string, std::string> run(FocusStore& focus, Date now, std::string_view command, int minutes = 0);

/// The timer's state as one JSON object; docs/terminal.md says what is in it.
std::string json(const FocusStore& focus, Date now);

} // namespace kippo::FocusCommands
