#pragma once

#include "Agents/TranscriptWatcher.h"

#include <fstream>
#include <gtest/gtest.h>
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

inline std::vector<std::string> linesOf(const std::string& path) {
    std::ifstream file{path};
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// Adds a line, of which the half means nothing while it is being written.
inline void write(const std::string& line, std::vector<std::string>& lines, Parser parser) {
    const auto before = parse(parser, lines);
    lines.push_back(line.substr(0, line.size() / 2));
    EXPECT_EQ(parse(parser, lines), before) << line;
    lines.back() = line;
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
