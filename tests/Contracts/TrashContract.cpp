#include "Fakes/FakeTrash.h"
#include "Fakes/PrivateHome.h"
#include "Platform/Linux/Disks.h"
#include "Platform/Linux/FreedesktopTrash.h"

#include <fcntl.h>
#include <functional>
#include <gmock/gmock.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kippo {

namespace fs = std::filesystem;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// The same of every implementation. `make` puts a folder at a path, `exists` looks whether there is one.
void movesThereAndBack(Trash& trash, const std::string& path, const std::function<void(const std::string&)>& make,
                       const std::function<bool(const std::string&)>& exists) {
    EXPECT_THAT(trash.moveToTrash(path).error().sentence, HasSubstr("not there"));
    make(path);
    const auto first = trash.moveToTrash(path);
    ASSERT_TRUE(first) << first.error().sentence;
    EXPECT_EQ(first->original, path);
    EXPECT_FALSE(exists(path));
    make(path);
    EXPECT_THAT(trash.putBack(*first).error().sentence, HasSubstr("could not be put back"));
    const auto second = trash.moveToTrash(path);
    ASSERT_TRUE(second);
    EXPECT_NE(first->trashed, second->trashed);
    EXPECT_TRUE(trash.putBack(*first));
    EXPECT_TRUE(exists(path));
    EXPECT_FALSE(trash.putBack(*first)) << "it is back";
}

/// Runs `checks` in a process of its own where it may mount disks; skips the test where the system forbids that.
void withOwnDisks(const std::function<void()>& checks) {
    constexpr int forbidden = 77;
    const pid_t pid = fork();
    if (pid == 0) {
        const uid_t user = geteuid();
        const gid_t group = getegid();
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
            _exit(forbidden);
        }
        std::ofstream{"/proc/self/setgroups"} << "deny";
        std::ofstream{"/proc/self/uid_map"} << user << ' ' << user << " 1";
        std::ofstream{"/proc/self/gid_map"} << group << ' ' << group << " 1";
        if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
            _exit(forbidden);
        }
        checks();
        _exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == forbidden) {
        GTEST_SKIP() << "this system lets nobody mount disks of their own";
    }
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

} // namespace

TEST(TrashContract, RealAndFake) {
    FakeTrash fake;
    movesThereAndBack(
        fake, "/p/node_modules", [&](const auto& path) { fake.places.insert(path); },
        [&](const auto& path) { return fake.places.contains(path); });
    const PrivateHome home;
    FreedesktopTrash real{home.path("data")};
    fs::create_directory(home.path("p"));
    movesThereAndBack(
        real, home.path("p/node_modules"), [](const auto& path) { fs::create_directory(path); },
        [](const auto& path) { return fs::exists(path); });
}

struct FreedesktopTrashTest : testing::Test {
    PrivateHome home;
    FreedesktopTrash trash{home.path("data")};
    std::string contents = home.path("data/Trash/files/");

    std::string record(const std::string& name) const { return home.read("data/Trash/info/" + name + ".trashinfo"); }
};

TEST_F(FreedesktopTrashTest, KeepsTheRecordThatFileManagersRead) {
    const std::string name = "a b%ü\n=[x]";
    home.write("p/" + name + "/file", "text");
    ASSERT_TRUE(trash.moveToTrash(home.path("p/") + name + "/"));
    EXPECT_EQ(home.read("data/Trash/files/" + name + "/file"), "text");
    EXPECT_THAT(record(name), StartsWith("[Trash Info]\nPath=" + home.path("p/") + "a%20b%25%C3%BC%0A%3D%5Bx%5D\n"));
    EXPECT_THAT(record(name), ContainsRegex("\nDeletionDate=2[0-9]{3}-[01][0-9]-[0-3][0-9]T[0-2][0-9]:[0-5][0-9]:"
                                            "[0-6][0-9]\n$"));
    EXPECT_EQ(fs::status(contents).permissions(), fs::perms{0700});
    // Others' records and contents keep their names, with or without each other.
    home.write("data/Trash/info/dist.trashinfo", "record");
    home.write("data/Trash/files/dist.2/file", "other");
    home.write("p/dist/file", "mine");
    EXPECT_EQ(trash.moveToTrash(home.path("p/dist"))->trashed, contents + "dist.3");
    EXPECT_EQ(record("dist"), "record");
    EXPECT_FALSE(home.exists("data/Trash/info/dist.2.trashinfo"));
    std::string umlauts(100, 'x');
    for (int i = 0; i < 75; ++i) {
        umlauts += "ü";
    }
    fs::create_directory(home.path(umlauts));
    const auto moved = trash.moveToTrash(home.path(umlauts));
    ASSERT_TRUE(moved);
    EXPECT_TRUE(trash.putBack(*moved));
    EXPECT_TRUE(home.exists(umlauts));
}

TEST_F(FreedesktopTrashTest, MovesLinksAndNotWhatTheyLeadTo) {
    home.write("elsewhere/file", "text");
    fs::create_directory_symlink(home.path("elsewhere"), home.path("link"));
    const auto moved = trash.moveToTrash(home.path("link/"));
    ASSERT_TRUE(moved);
    EXPECT_TRUE(fs::is_symlink(moved->trashed));
    EXPECT_TRUE(home.exists("elsewhere/file"));
    fs::create_directory_symlink(home.path("elsewhere"), home.path("project"));
    EXPECT_EQ(trash.moveToTrash(home.path("project/file"))->original, home.path("elsewhere/file"));
    for (const std::string& odd : {std::string{"relative"}, std::string{"/"}, home.path() + "/elsewhere/..",
                                   home.path("data"), home.path("no/where"), std::string{}}) {
        EXPECT_FALSE(trash.moveToTrash(odd)) << odd;
    }
    EXPECT_TRUE(home.exists("elsewhere"));
}

TEST_F(FreedesktopTrashTest, PutsBackOnlyWhatItMoved) {
    home.write("p/deep/dist/file", "old");
    const auto moved = trash.moveToTrash(home.path("p/deep/dist"));
    ASSERT_TRUE(moved);
    fs::remove_all(home.path("p"));
    EXPECT_TRUE(trash.putBack(*moved));
    EXPECT_EQ(home.read("p/deep/dist/file"), "old");
    EXPECT_EQ(record("dist"), "");
    ASSERT_TRUE(trash.moveToTrash(home.path("p/deep/dist")));
    // The Trash was emptied, and has another project's folder of the same name by now.
    fs::remove_all(home.path("data/Trash"));
    home.write("q/dist/file", "another");
    ASSERT_TRUE(trash.moveToTrash(home.path("q/dist")));
    EXPECT_THAT(trash.putBack(*moved).error().sentence, HasSubstr("not in the Trash any more"));
    EXPECT_FALSE(home.exists("p/deep/dist"));
}

TEST_F(FreedesktopTrashTest, StaysWhereItIsWhenTheTrashIsUnusable) {
    home.write("p/dist/file", "text");
    home.write("data/Trash/files", "no folder");
    EXPECT_EQ(trash.moveToTrash(home.path("p/dist")).error().sentence,
              "“dist” could not be moved to the Trash: its disk has no Trash that you may use (Not a directory).");
    fs::remove_all(home.path("data/Trash"));
    fs::create_directory(home.path("elsewhere"));
    fs::create_directory(home.path("data/Trash"));
    fs::create_directory_symlink(home.path("elsewhere"), home.path("data/Trash/files"));
    EXPECT_FALSE(trash.moveToTrash(home.path("p/dist"))) << "a link may lead to another disk";
    EXPECT_TRUE(home.exists("p/dist/file"));
}

TEST_F(FreedesktopTrashTest, OtherDisksHaveTheirOwn) {
    withOwnDisks([this] {
        for (const char* folder : {"disk", "same", "p/mount"}) {
            fs::create_directories(home.path(folder));
        }
        ASSERT_EQ(mount("tmpfs", home.path("disk").c_str(), "tmpfs", 0, nullptr), 0);
        const std::string user = std::to_string(geteuid());
        home.write("disk/a b/dist/file", "text");
        auto moved = trash.moveToTrash(home.path("disk/a b/dist"));
        ASSERT_TRUE(moved) << moved.error().sentence;
        EXPECT_EQ(moved->trashed, home.path("disk/.Trash-" + user + "/files/dist"));
        EXPECT_THAT(home.read("disk/.Trash-" + user + "/info/dist.trashinfo"), HasSubstr("\nPath=a%20b/dist\n"));
        EXPECT_TRUE(trash.putBack(*moved));
        // A shared one counts only when nobody can take others' things out of it.
        fs::create_directory(home.path("disk/.Trash"));
        EXPECT_THAT(trash.moveToTrash(home.path("disk/a b/dist"))->trashed, HasSubstr(".Trash-" + user));
        home.write("disk/dist/file", "text");
        fs::permissions(home.path("disk/.Trash"), fs::perms{01777});
        moved = trash.moveToTrash(home.path("disk/dist"));
        EXPECT_EQ(moved->trashed, home.path("disk/.Trash/" + user + "/files/dist"));
        EXPECT_TRUE(trash.putBack(*moved));
        // The same file system at another place is another disk to a rename.
        ASSERT_EQ(mount(home.path("p").c_str(), home.path("same").c_str(), nullptr, MS_BIND, nullptr), 0);
        home.write("same/dist/file", "text");
        EXPECT_EQ(trash.moveToTrash(home.path("same/dist"))->trashed, home.path("same/.Trash-" + user + "/files/dist"));
        // What is mounted, or has something mounted inside, stays.
        ASSERT_EQ(mount("tmpfs", home.path("p/mount").c_str(), "tmpfs", 0, nullptr), 0);
        EXPECT_THAT(trash.moveToTrash(home.path("p/mount")).error().sentence, HasSubstr("a disk is mounted there"));
        EXPECT_THAT(trash.moveToTrash(home.path("p")).error().sentence, HasSubstr("a disk is mounted there"));
        // A disk that is read only.
        ASSERT_EQ(mount(nullptr, home.path("disk").c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
        EXPECT_FALSE(trash.moveToTrash(home.path("disk/dist")));
        EXPECT_TRUE(home.exists("disk/dist/file"));
    });
}

TEST(Disks, ReadsTheMountTable) {
    const std::string table = "22 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
                              "40 22 0:35 / /mnt/a\\040b rw shared:1 - tmpfs tmpfs rw\n41 22\n";
    EXPECT_TRUE(Disks::isMountedAtOrBelow("/mnt/a b", table));
    EXPECT_TRUE(Disks::isMountedAtOrBelow("/mnt", table));
    EXPECT_FALSE(Disks::isMountedAtOrBelow("/mnt/a", table));
    EXPECT_FALSE(Disks::isMountedAtOrBelow("/mnt/a b/c", table));
}

} // namespace kippo
