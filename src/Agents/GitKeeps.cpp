#include "Agents/GitKeeps.h"

#include "Support/Text.h"

#include <algorithm>
#include <array>
#include <dirent.h>
#include <initializer_list>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace kippo::GitKeeps {

namespace {

constexpr Seconds patience{30};

enum class Kind { nothing, file, folder };

Kind kindOf(const std::string& path) {
    struct stat there{};
    if (stat(path.c_str(), &there) != 0) {
        return Kind::nothing;
    }
    return S_ISDIR(there.st_mode) ? Kind::folder : Kind::file;
}

/// Whether `folder` lies in a repository or another working tree.
bool isUnderGit(std::string folder) {
    while (!folder.empty()) {
        if (kindOf(folder + "/.git") != Kind::nothing) {
            return true;
        }
        folder.resize(folder.rfind('/'));
    }
    return false;
}

/// What git prints, run in `folder` without taking locks and without the programs that a repository may name.
std::string git(const std::string& folder, std::initializer_list<const char*> words, ProcessRunner& runner) {
    std::vector<std::string> arguments{
        "-C", folder, "--no-optional-locks", "--literal-pathspecs", "-c", "core.fsmonitor=false"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    return runner.output("/usr/bin/git", arguments, patience).value_or(std::string{});
}

/// Git keeps no empty folders, so people put one of these inside.
bool isPlaceholder(std::string_view path) {
    constexpr std::array<std::string_view, 3> names{".gitkeep", ".keep", ".gitignore"};
    return std::ranges::find(names, Text::lastPathComponent(path)) != names.end();
}

bool tracksFiles(const std::string& project, const std::string& name, ProcessRunner& runner) {
    // Lists the folder itself when nothing in it is tracked, so that no answer means that git could not tell.
    const std::string listed =
        git(project, {"ls-files", "-z", "-t", "--cached", "--others", "--directory", "--", name.c_str()}, runner);
    const auto entries = Text::split(listed, '\0');
    return entries.empty() || std::ranges::any_of(entries, [](std::string_view entry) {
               return !entry.starts_with("? ") && !isPlaceholder(entry);
           });
}

/// Whether a folder with a ".git" of its own holds more than its repository has elsewhere.
bool holdsWork(const std::string& tree, ProcessRunner& runner) {
    switch (kindOf(tree + "/.git")) {
    case Kind::nothing:
        return false;
    case Kind::folder:
        return true; // its commits are in there too
    case Kind::file:
        break;
    }
    const std::string status = git(tree, {"status", "--porcelain=v2", "--branch", "--untracked-files=normal"}, runner);
    const auto lines = Text::split(status, '\n');
    return lines.empty() || std::ranges::any_of(lines, [](std::string_view line) {
               return !line.starts_with("# ") || line == "# branch.head (detached)";
           });
}

bool anyTreeBelowHoldsWork(const std::string& folder, ProcessRunner& runner) {
    const std::unique_ptr<DIR, int (*)(DIR*)> entries{opendir(folder.c_str()), closedir};
    while (const dirent* entry = entries ? readdir(entries.get()) : nullptr) {
        const std::string_view name{entry->d_name};
        if (name != "." && name != ".." && name != ".git" && holdsWork(folder + "/" + entry->d_name, runner)) {
            return true;
        }
    }
    return false;
}

} // namespace

bool somethingIn(const std::string& project, const std::string& name, ProcessRunner& runner) {
    const std::string folder = project + "/" + name;
    return holdsWork(folder, runner) || (isUnderGit(project) && tracksFiles(project, name, runner)) ||
           (name.ends_with("worktrees") && anyTreeBelowHoldsWork(folder, runner));
}

} // namespace kippo::GitKeeps
