#include "Fakes/PrivateHome.h"
#include "Platform/Linux/InotifyFileWatcher.h"

#include <gmock/gmock.h>
#include <vector>

namespace kippo {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

/// The kernel queues an event before the call that causes it returns, so nothing here waits.
struct FileWatcherTest : testing::Test {
    PrivateHome home;
    const fs::path folder = home.path();
    InotifyFileWatcher watcher;
    std::vector<std::string> seen;

    FileWatcherTest() {
        watcher.setCallback([this](const std::string& path) { seen.push_back(fs::path{path}.filename()); });
    }

    void append(const fs::path& path) { std::ofstream{path, std::ios::app} << "x"; }
    std::vector<std::string> changes() {
        seen.clear();
        watcher.dispatch();
        return seen;
    }
    std::vector<std::string> changesBy(const fs::path& written) {
        append(written);
        return changes();
    }
};

TEST_F(FileWatcherTest, TellsOfWritesAndOfNothingElse) {
    append(folder / "log");
    append(folder / "other");
    watcher.watch({folder / "log"});
    EXPECT_THAT(changes(), IsEmpty());
    append(folder / "log");
    append(folder / "log");
    append(folder / "other");
    EXPECT_THAT(changes(), ElementsAre("log"));
    EXPECT_THAT(changes(), IsEmpty());
    watcher.watch({folder / "other"});
    append(folder / "log");
    append(folder / "other");
    EXPECT_THAT(changes(), ElementsAre("other"));
}

TEST_F(FileWatcherTest, SeesAFileBornReplacedAndWrittenAgain) {
    watcher.watch({folder / "log"});
    EXPECT_THAT(changesBy(folder / "log"), ElementsAre("log"));
    EXPECT_THAT(changesBy(folder / "log"), ElementsAre("log"));
    append(folder / "new");
    fs::rename(folder / "new", folder / "log");
    EXPECT_THAT(changes(), ElementsAre("log"));
    EXPECT_THAT(changesBy(folder / "log"), ElementsAre("log"));
    fs::remove(folder / "log");
    EXPECT_THAT(changes(), ElementsAre("log"));
    EXPECT_THAT(changesBy(folder / "log"), ElementsAre("log"));
}

TEST_F(FileWatcherTest, FollowsASymbolicLinkToTheRealFile) {
    fs::create_directory(folder / "dotfiles");
    append(folder / "dotfiles/real");
    fs::create_symlink(folder / "dotfiles/real", folder / "link");
    watcher.watch({folder / "link"});
    EXPECT_THAT(changesBy(folder / "dotfiles/real"), ElementsAre("link"));
    append(folder / "new");
    fs::rename(folder / "new", folder / "dotfiles/real");
    EXPECT_THAT(changes(), ElementsAre("link"));
    EXPECT_THAT(changesBy(folder / "dotfiles/real"), ElementsAre("link"));
}

TEST_F(FileWatcherTest, TwoPathsToOneFileAreBothTold) {
    append(folder / "a");
    fs::create_hard_link(folder / "a", folder / "b");
    watcher.watch({folder / "a", folder / "b", folder / "a"});
    EXPECT_THAT(changesBy(folder / "a"), ElementsAre("a", "b"));
    watcher.watch({folder / "b"});
    EXPECT_THAT(changesBy(folder / "a"), ElementsAre("b"));
}

TEST_F(FileWatcherTest, OutlivesItsFolders) {
    const fs::path inner = folder / "inner";
    watcher.watch({inner / "log", "", "/nonexistent/folder/log"});
    fs::create_directory(inner);
    watcher.watch({inner / "log"});
    EXPECT_THAT(changesBy(inner / "log"), ElementsAre("log"));
    fs::remove_all(inner);
    changes();
    fs::create_directory(inner);
    watcher.watch({inner / "log"});
    EXPECT_THAT(changesBy(inner / "log"), ElementsAre("log"));
}

TEST_F(FileWatcherTest, WatchingAnewFromTheCallbackIsFine) {
    append(folder / "a");
    append(folder / "b");
    watcher.watch({folder / "a", folder / "b"});
    watcher.setCallback([this](const std::string& path) {
        seen.push_back(fs::path{path}.filename());
        watcher.watch({folder / "a"});
    });
    append(folder / "a");
    append(folder / "b");
    EXPECT_THAT(changes(), ElementsAre("a"));
}

TEST_F(FileWatcherTest, LostEventsTellOfEveryFile) {
    std::size_t limit = 0;
    std::ifstream{"/proc/sys/fs/inotify/max_queued_events"} >> limit;
    if (limit == 0 || limit > 100'000) {
        GTEST_SKIP() << "this kernel's event queue is too long to fill";
    }
    append(folder / "a");
    append(folder / "quiet");
    watcher.watch({folder / "a", folder / "quiet"});
    // Equal neighbours are joined by the kernel, so two kinds of event take turns.
    for (std::size_t i = 0; i <= limit / 2 + 8; ++i) {
        fs::create_symlink("x", folder / "link");
        fs::remove(folder / "link");
    }
    EXPECT_THAT(changes(), ElementsAre("a", "quiet"));
    EXPECT_THAT(changesBy(folder / "quiet"), ElementsAre("quiet"));
}

} // namespace kippo
