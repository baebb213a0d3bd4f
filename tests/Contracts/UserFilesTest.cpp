#include "Fakes/Each.h"
#include "Fakes/FakeUserFiles.h"
#include "Fakes/PrivateHome.h"
#include "Platform/Posix/PosixUserFiles.h"

#include <csignal>
#include <functional>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kippo {

namespace fs = std::filesystem;

namespace {

/// The same of every implementation.
void keepsFiles(UserFiles& files, const std::string& folder) {
    const auto file = folder + "/deep/er/file";
    EXPECT_EQ(*files.read(file), std::nullopt);
    EXPECT_FALSE(files.copyOnce(file, folder + "/copy"));
    const std::string bytes{"a\0\r\n\xFF", 5};
    for (const auto& text : {bytes, std::string{}, std::string(100'000, 'x'), bytes}) {
        ASSERT_TRUE(files.write(file, text));
        EXPECT_EQ(*files.read(file), text);
    }
    EXPECT_TRUE(files.copyOnce(file, folder + "/copy"));
    EXPECT_TRUE(files.write(file, "new"));
    EXPECT_TRUE(files.copyOnce(file, folder + "/copy"));
    EXPECT_EQ(*files.read(folder + "/copy"), bytes);
}

/// What `work` says in a process of its own, which has lost the rights of root.
bool asAnOrdinaryUser(const std::string& home, const std::function<bool()>& work) {
    if (geteuid() == 0) {
        EXPECT_EQ(chown(home.c_str(), 65534, 65534), 0);
    }
    const pid_t child = fork();
    if (child == 0) {
        const bool isOrdinary =
            geteuid() != 0 || (setresgid(65534, 65534, 65534) == 0 && setresuid(65534, 65534, 65534) == 0);
        _exit(isOrdinary && work() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status == 0;
}

std::vector<std::string> names(const std::string& folder) {
    return each(fs::directory_iterator{folder}, [](const auto& entry) { return entry.path().filename().string(); });
}

struct PosixUserFilesTest : testing::Test {
    PrivateHome home;
    PosixUserFiles files;
};

} // namespace

TEST(UserFilesContract, InMemoryAndOnTheDisk) {
    FakeUserFiles fake;
    keepsFiles(fake, "/home/me");
    const PrivateHome home;
    PosixUserFiles real;
    keepsFiles(real, home.path());
    EXPECT_THAT(names(home.path("deep/er")), testing::ElementsAre("file"));
}

TEST_F(PosixUserFilesTest, FollowsLinksAndKeepsThem) {
    home.write("dotfiles/real", "old");
    fs::create_symlink("dotfiles/real", home.path("inner"));
    fs::create_directory(home.path("agent"));
    fs::create_symlink("../inner", home.path("agent/outer"));
    fs::create_symlink("not/yet/there", home.path("nowhere"));
    fs::create_symlink("../nowhere", home.path("agent/dangling"));
    for (const auto& [link, real] : {std::pair{"agent/outer", "dotfiles/real"}, {"agent/dangling", "not/yet/there"}}) {
        ASSERT_TRUE(files.write(home.path(link), "new")) << link;
        EXPECT_EQ(home.read(real), "new");
        EXPECT_TRUE(fs::is_symlink(home.path(link)));
        EXPECT_FALSE(fs::is_symlink(home.path(real)));
    }
    EXPECT_TRUE(fs::is_symlink(home.path("inner")) && fs::is_symlink(home.path("nowhere")));
    // The copy stands beside the link, and a dangling link is something that is there.
    EXPECT_TRUE(files.copyOnce(home.path("agent/outer"), home.path("agent/copy")));
    EXPECT_FALSE(fs::is_symlink(home.path("agent/copy")));
    fs::create_symlink("gone", home.path("agent/taken"));
    EXPECT_TRUE(files.copyOnce(home.path("agent/outer"), home.path("agent/taken")));
    EXPECT_TRUE(fs::is_symlink(home.path("agent/taken")) && !home.exists("agent/gone"));
    fs::create_symlink("circle", home.path("circle"));
    EXPECT_FALSE(files.read(home.path("circle")));
    EXPECT_FALSE(files.write(home.path("circle"), "new"));
    EXPECT_TRUE(fs::is_symlink(home.path("circle")));
}

TEST_F(PosixUserFilesTest, KeepsModeAndOwner) {
    home.write("file", "old");
    const auto file = home.path("file");
    if (geteuid() == 0) {
        ASSERT_EQ(chown(file.c_str(), 65534, 12345), 0);
    }
    fs::permissions(file, fs::perms{0640});
    struct stat before{};
    ASSERT_EQ(stat(file.c_str(), &before), 0);
    ASSERT_TRUE(files.write(file, "new"));
    ASSERT_TRUE(files.copyOnce(file, file + ".copy"));
    for (const auto& written : {file, file + ".copy"}) {
        struct stat after{};
        ASSERT_EQ(stat(written.c_str(), &after), 0);
        EXPECT_EQ(std::tuple(after.st_mode, after.st_uid, after.st_gid),
                  std::tuple(before.st_mode, before.st_uid, before.st_gid));
    }
    ASSERT_TRUE(files.write(home.path("made/new"), "new"));
    EXPECT_EQ(fs::status(home.path("made")).permissions(), fs::perms{0700});
    EXPECT_EQ(fs::status(home.path("made/new")).permissions(), fs::perms{0600});
}

TEST_F(PosixUserFilesTest, LeavesTheOldFileWhereItCannotWrite) {
    home.write("folder/file", "old");
    home.write("readonly", "old");
    fs::permissions(home.path("readonly"), fs::perms{0444});
    EXPECT_EQ(files.write(home.path("readonly"), "new").error().reason, "Permission denied") << "even for root";
    EXPECT_FALSE(files.read(home.path("folder")));
    EXPECT_FALSE(files.write(home.path("readonly/file"), "new"));
    ASSERT_EQ(mkfifo(home.path("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(files.read(home.path("pipe"))) << "and does not wait";

    const auto file = home.path("folder/file");
    fs::permissions(home.path("folder"), fs::perms{0555});
    EXPECT_TRUE(asAnOrdinaryUser(home.path(), [&] {
        return files.write(file, "new").error().reason == "Permission denied" && !files.copyOnce(file, file + ".copy");
    }));
    fs::permissions(home.path("folder"), fs::perms{0777});
    fs::permissions(file, fs::perms{0666});
    EXPECT_TRUE(asAnOrdinaryUser(home.path(), [&] {
        // A disk that takes no more than some bytes.
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{50'000, 50'000};
        setrlimit(RLIMIT_FSIZE, &limit);
        return !files.write(file, std::string(60'000, 'x')) &&
               !files.write(home.path("folder/other"), std::string(60'000, 'x'));
    }));
    EXPECT_EQ(home.read("folder/file"), "old");
    EXPECT_THAT(names(home.path("folder")), testing::ElementsAre("file"));
}

TEST_F(PosixUserFilesTest, RemovesWhatKilledProcessesLeft) {
    home.write(".file.kippo-new-abcdef", "left");
    home.write(".file.copy.kippo-new-abcdef", "left");
    home.write(".file.kippo-new-ghijkl", "another process writes it just now");
    home.write(".file.kippo-newer", "the user's");
    const int other = open(home.path(".file.kippo-new-ghijkl").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    EXPECT_TRUE(files.write(home.path("file"), "new"));
    EXPECT_TRUE(files.copyOnce(home.path("file"), home.path("file.copy")));
    close(other);
    EXPECT_THAT(names(home.path()),
                testing::UnorderedElementsAre("file", "file.copy", ".file.kippo-new-ghijkl", ".file.kippo-newer"));
}

} // namespace kippo
