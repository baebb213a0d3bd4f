#pragma once

#include "Support/Time.h"

#include <optional>
#include <string>

namespace kippo::Terminal {

/// What a hook costs, tried in a folder of its own that leaves no trace in the event log.
struct HookProbe {
    Seconds time{};     ///< of the fastest of a few runs, from its start to its end
    bool wrote = false; ///< each run left its line
};

/// Runs `executable` in hook mode; nothing when it, or the folder, cannot be made use of.
std::optional<HookProbe> probeHook(const std::string& executable);

} // namespace kippo::Terminal
