#pragma once

#include "Agents/TranscriptWatcher.h"

#include <string>
#include <vector>

/// Lines and states for the tests of transcripts.
namespace kippo::samples {

inline constexpr Date modified = dateFromUnix(1795226000);

using Parser = std::optional<TranscriptWatcher::State> (*)(std::span<const std::string_view>, std::string_view, Date);

inline std::optional<TranscriptWatcher::State> parse(Parser parser, const std::vector<std::string>& lines) {
    const std::vector<std::string_view> views(lines.begin(), lines.end());
    return parser(views, "fallback", modified);
}

/// The sentence of `needsYou`, else the phase's name; "+" while the end of a turn has to settle.
inline std::string phaseName(const TranscriptWatcher::State& state) {
    using Case = TranscriptWatcher::State::Phase::Case;
    switch (state.phase.value) {
    case Case::needsYou:
        return state.phase.sentence;
    case Case::working:
        return state.pendingDone ? "working+" : "working";
    case Case::done:
        return "done";
    case Case::interrupted:
        return "interrupted";
    }
    return {};
}

} // namespace kippo::samples
