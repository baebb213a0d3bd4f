#include "Agents/LeftoverScanner.h"

#include "Agents/GitKeeps.h"
#include "Support/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <tuple>
#include <utility>

namespace kippo::LeftoverScanner {

namespace {

/// For one folder: a million files on a disk that turns.
constexpr Seconds patience{120};

/// What tools build inside a project's folder.
constexpr std::array<std::string_view, 14> rebuildable{
    "node_modules", ".next", ".turbo", ".nuxt",  ".svelte-kit", ".parcel-cache", ".vite",
    "dist",         "build", ".build", "target", ".venv",       "venv",          ".claude/worktrees"};

struct Candidate {
    std::string path; ///< as the project's folder was given
    std::string real; ///< without symbolic links
    std::string project;
    std::string name; ///< of the folder below the project's; empty for a cache
};

std::string joined(const std::string& folder, std::string_view name) {
    return folder + (folder.ends_with('/') ? "" : "/") + std::string{name};
}

/// `path` without symbolic links, as far as it exists.
std::string realPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real{realpath(path.c_str(), nullptr), std::free};
    const auto slash = path.rfind('/');
    if (real || slash == std::string::npos || slash == 0) {
        return real ? real.get() : path;
    }
    return joined(realPath(path.substr(0, slash)), path.substr(slash + 1));
}

bool isInside(std::string_view path, const std::string& folder) { return path.starts_with(joined(folder, "")); }

/// A folder at every step of `name` below `folder`, without symbolic links: what they lead to is kept elsewhere.
bool isFolder(std::string folder, std::string_view name) {
    for (const std::string_view part : Text::split(name, '/')) {
        folder = joined(folder, part);
        struct stat there{};
        if (lstat(folder.c_str(), &there) != 0 || !S_ISDIR(there.st_mode)) {
            return false;
        }
    }
    return true;
}

void addProject(std::string folder, const std::vector<std::string>& realCaches, std::vector<Candidate>& candidates) {
    while (folder.size() > 1 && folder.ends_with('/')) {
        folder.pop_back();
    }
    const std::string real = realPath(folder);
    if (!folder.starts_with('/') || real == "/" ||
        std::ranges::any_of(realCaches, [&](const auto& cache) { return isInside(cache, real); })) {
        return;
    }
    for (const std::string_view name : rebuildable) {
        if (isFolder(real, name)) {
            candidates.push_back({.path = joined(folder, name),
                                  .real = joined(real, name),
                                  .project = std::string{Text::lastPathComponent(folder)},
                                  .name = std::string{name}});
        }
    }
}

/// Every folder that may be listed, each once, the outer before the inner.
std::vector<Candidate> findCandidates(const std::set<std::string>& projects, const std::vector<std::string>& caches) {
    std::vector<Candidate> candidates;
    std::vector<std::string> realCaches;
    for (const auto& cache : caches) {
        realCaches.push_back(realPath(cache));
    }
    for (const auto& project : projects) {
        addProject(project, realCaches, candidates);
    }
    for (std::size_t i = 0; i < caches.size(); ++i) {
        const auto slash = std::min(caches[i].rfind('/'), caches[i].size());
        if (isFolder(caches[i].substr(0, slash), caches[i].substr(slash))) {
            candidates.push_back({.path = caches[i], .real = realCaches[i], .project = "Caches", .name = {}});
        }
    }
    std::ranges::sort(candidates, {}, [](const Candidate& one) { return std::tie(one.real, one.path); });
    const auto again = std::ranges::unique(candidates, {}, &Candidate::real);
    candidates.erase(again.begin(), again.end());
    return candidates;
}

/// The first number that the disk-usage tool prints.
std::optional<std::int64_t> sizeKB(const std::string& path, ProcessRunner& runner) {
    const std::vector<std::string> arguments{"-sk", path};
    const auto printed = runner.output("/usr/bin/du", arguments, patience).value_or(std::string{});
    const std::string_view text = Text::trimmed(printed);
    std::int64_t size = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), size);
    return error == std::errc{} ? std::optional{size} : std::nullopt;
}

} // namespace

std::vector<std::string> globalCaches(const std::string& home, const std::string& cacheFolder) {
    std::vector<std::string> caches;
    if (!home.empty()) {
        for (const char* path : {"Library/Developer/Xcode/DerivedData", "Library/Caches/ms-playwright",
                                 ".cache/puppeteer", ".npm/_cacache", "Library/Caches/pnpm", "Library/Caches/Yarn"}) {
            caches.push_back(joined(home, path));
        }
    }
    if (!cacheFolder.empty()) {
        for (const char* path :
             {"ms-playwright", "pnpm", "yarn", "deno", "node-gyp", "electron", "Cypress", "uv", "pip", "go-build"}) {
            caches.push_back(joined(cacheFolder, path));
        }
    }
    return caches;
}

std::vector<Leftover> scan(const std::set<std::string>& projects, const std::vector<std::string>& caches,
                           ProcessRunner& runner) {
    std::vector<Leftover> found;
    std::vector<std::string> outer;
    for (auto& candidate : findCandidates(projects, caches)) {
        if (std::ranges::any_of(outer, [&](const auto& folder) { return isInside(candidate.real, folder); })) {
            continue;
        }
        const auto size = sizeKB(candidate.path, runner);
        if (!size || *size < smallestKB) {
            continue;
        }
        if (!candidate.name.empty()) {
            const auto project = candidate.real.substr(0, candidate.real.size() - candidate.name.size() - 1);
            if (GitKeeps::somethingIn(project, candidate.name, runner)) {
                continue;
            }
        }
        outer.push_back(std::move(candidate.real));
        found.push_back({.path = std::move(candidate.path), .sizeKB = *size, .project = std::move(candidate.project)});
    }
    std::ranges::sort(found, [](const Leftover& one, const Leftover& other) {
        return std::tie(other.sizeKB, one.path) < std::tie(one.sizeKB, other.path);
    });
    return found;
}

} // namespace kippo::LeftoverScanner
