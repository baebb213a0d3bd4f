#pragma once

#include "Support/Time.h"

#include <cstdint>
#include <string>

/// A week of somebody's Claude Code transcripts, made up by a seeded generator: 400 files and a gigabyte, a third of
/// the lines with usage, lines of 200 bytes to a megabyte, most messages written as several lines, some sessions begun
/// with the messages of another.
namespace kippo::UsageCorpus {

/// 2026-11-21 12:00:00 UTC: the week ends here, whenever it is made.
inline constexpr Date end = dateFromUnix(1795262400);

inline constexpr int files = 400;
inline constexpr std::uint64_t bytes = 1'000'000'000;

/// Writes it below `home`, unless a finished one is there.
void make(const std::string& home);

/// About `size` bytes of whole lines as they are appended to a running session; `round` makes the messages new.
std::string growth(std::size_t size, int round);

} // namespace kippo::UsageCorpus
