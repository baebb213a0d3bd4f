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

/// Tool caches that every project shares, absolute; whether or not they exist. `cacheFolder` is the user's, such as
/// ~/.cache.
std::vector<std::string> globalCaches(const std::string& home, const std::string& cacheFolder);
/// The folders of at least `smallestKB`, largest first: those of `projects` (absolute project folders) and of `caches`.
/// Left out are symbolic links, folders inside another one that is listed, what git keeps (GitKeeps), and projects that
/// hold the caches: that is the home folder or one above it, no project. Blocking: runs the disk-usage tool once per
/// candidate, and git where there is a repository.
std::vector<Leftover> scan(const std::set<std::string>& projects, const std::vector<std::string>& caches,
                           ProcessRunner& runner);

} // namespace kippo::LeftoverScanner
