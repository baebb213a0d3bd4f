#pragma once

#include "Agents/AgentModels.h"
#include "Support/ProcessRunner.h"

#include <set>
#include <string>
#include <vector>

/// Finds large folders that agents' work leaves behind and that can be built again.
namespace kippo::LeftoverScanner {

/// Smaller folders are not worth a line.
inline constexpr std::int64_t smallestKB = 10'241;

/// Tool caches that every project shares, absolute; whether or not they exist.
std::vector<std::string> globalCaches(const std::string& home, const std::string& cacheFolder);
/// The folders of at least `smallestKB`, largest first: those of `projects` (absolute project folders) and the global
/// caches. Blocking: runs the disk-usage tool once per candidate.
std::vector<Leftover> scan(const std::set<std::string>& projects, const std::vector<std::string>& caches,
                           ProcessRunner& runner);

} // namespace kippo::LeftoverScanner
