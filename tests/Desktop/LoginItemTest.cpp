#include "Fakes/FakeLoginItem.h"
#include "Fakes/FakeUserFiles.h"
#include "Fakes/PrivateHome.h"
#include "Platform/Linux/XdgLoginItem.h"
#include "Platform/Posix/PosixUserFiles.h"

#include <gmock/gmock.h>

namespace kippo {

using testing::HasSubstr;

TEST(LoginItemContract, RealAndFake) {
    const auto check = [](LoginItem& item) {
        EXPECT_FALSE(item.isOn());
        for (const bool on : {false, true, true, false, false, true}) {
            EXPECT_TRUE(item.set(on));
            EXPECT_EQ(item.isOn(), on);
        }
    };
    FakeLoginItem fake;
    check(fake);
    const PrivateHome home;
    PosixUserFiles files;
    XdgLoginItem real{files, home.path(".config/autostart"), "/usr/bin/kippo"};
    check(real);
    EXPECT_THAT(home.read(".config/autostart/kippo.desktop"), HasSubstr("\nExec=/usr/bin/kippo\n"));
}

struct XdgLoginItemTest : testing::Test {
    FakeUserFiles files;
    const std::string path = "/home/me/.config/autostart/kippo.desktop";

    XdgLoginItem item(const std::string& executable = "/usr/bin/kippo") {
        return {files, "/home/me/.config/autostart", executable};
    }
};

TEST_F(XdgLoginItemTest, KeepsWhatPeopleChanged) {
    const std::string edited = "# mine\n[Desktop Entry]\nName=Kippo\nExec=env QT_SCALE_FACTOR=2 /usr/bin/kippo\n"
                               "Hidden = true\nX-GNOME-Autostart-enabled=false\n\n[Desktop Action x]\nExec=x\n";
    files.files[path] = edited;
    EXPECT_FALSE(item().isOn());
    EXPECT_TRUE(item().set(false));
    EXPECT_EQ(files.files[path], edited);
    EXPECT_TRUE(item().set(true));
    EXPECT_TRUE(item().isOn());
    EXPECT_EQ(files.files[path], "# mine\n[Desktop Entry]\nName=Kippo\nExec=env QT_SCALE_FACTOR=2 /usr/bin/kippo\n"
                                 "Hidden=false\nX-GNOME-Autostart-enabled=true\n\n[Desktop Action x]\nExec=x\n");
    EXPECT_TRUE(item().set(false));
    EXPECT_THAT(files.files[path], HasSubstr("Hidden=true"));
    // The other installation is gone.
    files.files[path] = "[Desktop Entry]\nExec=/opt/kippo/bin/kippo\nTryExec=/opt/kippo/bin/kippo\n";
    EXPECT_FALSE(item().isOn());
    EXPECT_TRUE(item().set(true));
    EXPECT_EQ(files.files[path], "[Desktop Entry]\nExec=/usr/bin/kippo\nTryExec=/usr/bin/kippo\n");
    for (const std::string& odd : {std::string{}, std::string{"no entry"}, std::string{"[Desktop Entry]"},
                                   std::string{"[Other]\nExec=/usr/bin/kippo"}}) {
        files.files[path] = odd;
        EXPECT_FALSE(item().isOn()) << odd;
        EXPECT_TRUE(item().set(true));
        EXPECT_TRUE(item().isOn()) << odd;
    }
}

TEST_F(XdgLoginItemTest, QuotesWhatACommandLineWouldRead) {
    EXPECT_TRUE(item("/home/Jo Doe/100% $a\"b\\c/kippo").set(true));
    // Once for the command line, and once more for the value.
    EXPECT_THAT(files.files[path], HasSubstr("\nExec=\"/home/Jo Doe/100%% \\\\$a\\\\\"b\\\\\\\\c/kippo\"\n"));
    EXPECT_THAT(files.files[path], HasSubstr("\nTryExec=/home/Jo Doe/100% $a\"b\\\\c/kippo\n"));
    EXPECT_TRUE(item("/home/Jo Doe/100% $a\"b\\c/kippo").isOn());
}

TEST_F(XdgLoginItemTest, SaysWhyItCannot) {
    files.full.insert(path);
    EXPECT_EQ(item().set(true).error().sentence, "Start at login could not be turned on: No space left on device.");
    files.unreadable.insert(path);
    EXPECT_FALSE(item().isOn());
    EXPECT_EQ(item().set(false).error().sentence, "Start at login could not be turned off: Permission denied.");
}

} // namespace kippo
