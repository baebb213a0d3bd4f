#include "Fakes/FakeUrlOpener.h"
#include "Fakes/PrivateHome.h"
#include "Platform/Linux/XdgUrlOpener.h"
#include "Views/XDesktop.h"

#include <cerrno>
#include <gmock/gmock.h>
#include <sys/wait.h>

namespace kippo {

using namespace std::chrono_literals;

TEST(UrlOpenerContract, HandsOverSafeUrlsAndRefusesOthers) {
    const PrivateHome home;
    // A browser that stays.
    home.write("bin/xdg-open",
               "#!/bin/sh\nprintf '%s\\n' \"$#\" \"$1\" >>\"" + home.path("opened") + "\"\nexec sleep 3\n");
    chmod(home.path("bin/xdg-open").c_str(), 0700);
    const std::string searched = std::getenv("PATH");
    setenv("PATH", (home.path("bin") + ":" + searched).c_str(), 1);
    const std::string letter = "mailto:help@example.org?subject=a%20b&body=$(id);'\"";
    XdgUrlOpener real;
    FakeUrlOpener fake;
    for (UrlOpener* opener : std::initializer_list<UrlOpener*>{&real, &fake}) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_TRUE(opener->open(letter));
        EXPECT_LT(std::chrono::steady_clock::now() - start, 1s) << "the browser is not waited for";
        for (const char* odd : {"", "-h", "file:///etc/passwd", "javascript:alert(1)", "/usr/bin/id", "HTTPS"}) {
            EXPECT_FALSE(opener->open(odd)) << odd;
        }
    }
    EXPECT_FALSE(real.open("https://example.org/a b\nc"));
    EXPECT_TRUE(eventually([&] { return home.read("opened") == "1\n" + letter + "\n"; })) << home.read("opened");
    EXPECT_THAT(fake.opened, testing::ElementsAre(letter));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "it is nobody's child";

    setenv("PATH", home.path("none").c_str(), 1);
    EXPECT_EQ(real.open("https://example.org").error().sentence,
              "This address cannot be opened: xdg-open is not installed.");
    setenv("PATH", searched.c_str(), 1);
}

} // namespace kippo
