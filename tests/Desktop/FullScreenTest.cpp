#include "Platform/Linux/X11FullScreenWatcher.h"
#include "Views/XDesktop.h"

#include <gtest/gtest.h>

namespace kippo {

TEST(X11FullScreenWatcher, HearsOfAFilmAsItComesAndGoes) {
    unsetenv("WAYLAND_DISPLAY");
    const auto desktop = XDesktop::start(640, 480);
    ASSERT_TRUE(desktop);
    setenv("DISPLAY", desktop->display().c_str(), 1);
    X11FullScreenWatcher watcher;
    int heard = 0;
    const Subscription subscription = watcher.observe([&] { ++heard; });
    const auto fills = [&](bool expected) {
        return eventually([&] { return watcher.dispatch() && watcher.fillsScreenAt({0, 0}) == expected; });
    };
    EXPECT_TRUE(fills(false));
    const xcb_window_t film = desktop->openFullScreen();
    EXPECT_TRUE(fills(true));
    EXPECT_FALSE(watcher.fillsScreenAt({640, 0})) << "the screen beside it";
    EXPECT_TRUE(X11FullScreenWatcher{}.fillsScreenAt({0, 0})) << "one that was there before";
    const int before = heard;
    desktop->close(film);
    EXPECT_TRUE(fills(false));
    EXPECT_GT(heard, before);
}

TEST(X11FullScreenWatcher, KnowsOfNoneUnderWayland) {
    setenv("WAYLAND_DISPLAY", "wayland-0", 1);
    X11FullScreenWatcher watcher;
    unsetenv("WAYLAND_DISPLAY");
    EXPECT_EQ(watcher.descriptor(), -1);
    EXPECT_FALSE(watcher.dispatch() || watcher.fillsScreenAt({0, 0}));
}

} // namespace kippo
