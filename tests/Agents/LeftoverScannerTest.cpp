#include "Agents/LeftoverScanner.h"
#include "Fakes/Each.h"
#include "Fakes/FakeProcessRunner.h"
#include "Fakes/PrivateHome.h"

#include <gmock/gmock.h>

namespace kippo {

namespace fs = std::filesystem;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

struct LeftoverScannerTest : testing::Test {
    PrivateHome home;
    FakeProcessRunner runner;

    /// A folder that the disk-usage tool will measure.
    std::string folder(const std::string& path, std::int64_t sizeKB = LeftoverScanner::smallestKB) {
        fs::create_directories(home.path(path));
        const std::string whole = home.path(path);
        runner.outputs["/usr/bin/du -sk " + whole] = std::to_string(sizeKB) + "\t" + whole + "\n";
        return whole;
    }
    /// What git prints about the folder `name` of a project.
    void gitLists(const std::string& project, const std::string& name, const std::string& printed) {
        runner.outputs[git(project) + "ls-files -z -t --cached --others --directory -- " + name] = printed;
    }
    void gitStatus(const std::string& tree, const std::string& printed) {
        runner.outputs[git(tree) + "status --porcelain=v2 --branch --untracked-files=normal"] = printed;
    }
    std::vector<std::string> scan(const std::set<std::string>& projects, const std::vector<std::string>& caches = {}) {
        return each(LeftoverScanner::scan(projects, caches, runner), &Leftover::path);
    }

private:
    std::string git(const std::string& tree) const {
        return "/usr/bin/git -C " + home.path(tree) +
               " --no-optional-locks --literal-pathspecs -c core.fsmonitor=false ";
    }
};

TEST_F(LeftoverScannerTest, ListsBigFoldersOfProjectsAndCachesLargestFirst) {
    EXPECT_THAT(scan({home.path("none"), home.path("p")}), IsEmpty());
    const auto modules = folder("p/node_modules");
    const auto worktrees = folder("q/.claude/worktrees", 30'000);
    const auto npm = folder(".npm/_cacache", 20'000);
    folder("p/target", 10'240);
    folder("p/sources", 99'999);
    fs::create_directories(home.path("p/build")); // cannot be measured
    fs::create_directories(home.path("p/venv"));
    runner.outputs["/usr/bin/du -sk " + home.path("p/venv")] = "du: cannot access\n";
    const auto caches = LeftoverScanner::globalCaches(home.path(), home.path(".cache"));
    const std::vector<Leftover> expected{{.path = worktrees, .sizeKB = 30'000, .project = "q"},
                                         {.path = npm, .sizeKB = 20'000, .project = "Caches"},
                                         {.path = modules, .sizeKB = 10'241, .project = "p"}};
    EXPECT_EQ(LeftoverScanner::scan({home.path("p"), home.path("q")}, caches, runner), expected);
    EXPECT_THAT(runner.calls, Each(StartsWith("/usr/bin/du -sk ")));
}

TEST_F(LeftoverScannerTest, ListsEachFolderOnceAndNothingThroughALink) {
    const auto outer = folder("p/node_modules");
    folder("p/node_modules/x/node_modules");
    folder("p/node_modules-old/dist", 9);
    const auto inner = folder("p/small/deep/dist");
    folder("p/dist", 9);
    folder("elsewhere");
    folder("agents/worktrees");
    fs::create_directory_symlink(home.path("elsewhere"), home.path("p/build"));
    fs::create_directory_symlink(home.path("agents"), home.path("p/.claude"));
    fs::create_directory_symlink(home.path("p"), home.path("z"));
    EXPECT_THAT(scan({home.path("p"), home.path("p/"), home.path("z"), home.path("p/node_modules/x"),
                      home.path("p/node_modules-old"), home.path("p/small/deep")}),
                ElementsAre(outer, inner));
}

TEST_F(LeftoverScannerTest, TheHomeFolderIsNoProject) {
    folder("build");
    folder("node_modules");
    const auto modules = folder("p/node_modules");
    const auto caches = LeftoverScanner::globalCaches(home.path(), home.path(".cache"));
    EXPECT_THAT(scan({"", "/", "p", ".", home.path(), home.path(".."), home.path("p")}, caches), ElementsAre(modules));
    EXPECT_THAT(LeftoverScanner::globalCaches("", ""), IsEmpty());
}

TEST_F(LeftoverScannerTest, KeepsAwayFromWhatGitKeeps) {
    fs::create_directories(home.path("repo/.git"));
    const auto app = [](const char* name) { return std::string{"repo/app/"} + name; };
    for (const char* name : {"build", "target", "venv", ".venv", ".vite", "dist"}) {
        folder(app(name));
    }
    const auto modules = folder(app("node_modules"));
    const auto next = folder(app(".next"));
    const std::string nul(1, '\0');
    gitLists("repo/app", "node_modules", "? node_modules/" + nul);
    gitLists("repo/app", ".next", "H .next/.gitkeep" + nul + "? .next/server/" + nul);
    gitLists("repo/app", "build", "H build/release.sh" + nul + "? build/out/" + nul);
    gitLists("repo/app", "target", ""); // git cannot tell
    gitLists("repo/app", "dist", "? dist/" + nul);
    fs::create_directories(home.path(app("dist/.git"))); // a clone, with its commits
    gitLists("repo/app", ".vite", "? .vite/" + nul);
    home.write(app(".vite/.git"), "gitdir: elsewhere");
    gitStatus(app(".vite"), "# branch.oid 1\n# branch.head pages\n? new\n");
    EXPECT_THAT(scan({home.path("repo/app")}), testing::UnorderedElementsAre(modules, next));
}

TEST_F(LeftoverScannerTest, WorktreesWithWorkInThemStay) {
    const auto trees = folder("p/.claude/worktrees");
    folder("p/.claude/worktrees/empty");
    home.write("p/.claude/worktrees/one/.git", "gitdir: elsewhere");
    const auto modules = folder("p/.claude/worktrees/one/node_modules");
    const std::string clean = "# branch.oid 1\n# branch.head worktree-one\n";
    gitLists("p/.claude/worktrees/one", "node_modules", std::string{"? node_modules/\0", 16});
    const std::set<std::string> projects{home.path("p"), home.path("p/.claude/worktrees/one")};
    for (const std::string& status : {clean + "1 .M N... 100644 100644 100644 1 1 a.cpp\n", clean + "? new.cpp\n",
                                      std::string{"# branch.oid 1\n# branch.head (detached)\n"}, std::string{}}) {
        gitStatus("p/.claude/worktrees/one", status);
        EXPECT_THAT(scan(projects), ElementsAre(modules)) << status;
    }
    gitStatus("p/.claude/worktrees/one", clean);
    EXPECT_THAT(scan(projects), ElementsAre(trees));
}

} // namespace kippo
