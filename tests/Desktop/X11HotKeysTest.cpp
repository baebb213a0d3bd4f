#include "Platform/Linux/X11HotKeys.h"
#include "Fakes/FakeHotKeys.h"
#include "Platform/Linux/X11Xkb.h"
#include "Views/XDesktop.h"

#include <cstdlib>
#include <gtest/gtest.h>

#include <xcb/xtest.h>

namespace kippo {

using namespace std::chrono_literals;

namespace {

// Where the keys are; what they give is the layout's.
constexpr std::uint8_t control = 37;
constexpr std::uint8_t alt = 64;
constexpr std::uint8_t capsLock = 66;
constexpr std::uint8_t numLock = 77;
constexpr std::uint8_t rightOfTab = 24;     // Q on a US keyboard
constexpr std::uint8_t rightOfCaps = 38;    // A on a US keyboard
constexpr std::uint8_t sameEverywhere = 28; // T
constexpr std::uint8_t sixthOfLowest = 57;  // N on a US keyboard

} // namespace

struct X11HotKeysTest : testing::Test {
    std::unique_ptr<XDesktop> desktop = XDesktop::start(640, 480);
    X11::Connection connection;
    std::unique_ptr<X11HotKeys> keys;
    int presses = 0;

    void SetUp() override {
        ASSERT_TRUE(desktop);
        setenv("DISPLAY", desktop->display().c_str(), 1);
        unsetenv("WAYLAND_DISPLAY");
        connection.reset(xcb_connect(nullptr, nullptr));
        X11::ask(connection.get(), xcb_xkb_use_extension, xcb_xkb_use_extension_reply,
                 std::uint16_t{XCB_XKB_MAJOR_VERSION}, std::uint16_t{XCB_XKB_MINOR_VERSION});
        keys = std::make_unique<X11HotKeys>();
        ASSERT_GE(keys->descriptor(), 0);
    }

    auto count() {
        return [this] { ++presses; };
    }
    void send(std::uint8_t type, std::uint8_t key) const {
        xcb_test_fake_input(connection.get(), type, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
        desktopHasSeenIt();
    }
    /// The server has done what was asked of it, and told whom it concerns.
    void desktopHasSeenIt() const { X11::ask(connection.get(), xcb_get_input_focus, xcb_get_input_focus_reply); }
    void tap(std::uint8_t key) const {
        send(XCB_KEY_PRESS, key);
        send(XCB_KEY_RELEASE, key);
    }
    void tapWithControlAndAlt(std::uint8_t key) const {
        send(XCB_KEY_PRESS, control);
        send(XCB_KEY_PRESS, alt);
        tap(key);
        send(XCB_KEY_RELEASE, alt);
        send(XCB_KEY_RELEASE, control);
    }
    /// How often one such press was told of. Presses come in their order: once the next one has, no more will.
    int toldOf(std::uint8_t key) {
        const int before = presses;
        bool isOver = false;
        const auto next = keys->grab({'T'}, [&] { isOver = true; });
        tapWithControlAndAlt(key);
        tapWithControlAndAlt(sameEverywhere);
        EXPECT_TRUE(eventually([&] { return keys->dispatch() && isOver; }));
        return presses - before;
    }
    /// Waits until the hot keys have seen it.
    void setLayout(const std::string& layouts) const {
        ASSERT_EQ(std::system(("setxkbmap " + layouts).c_str()), 0);
        throughout(50ms, [this] { return keys->dispatch(); });
    }
    void useLayout(std::uint8_t number) const {
        xcb_xkb_latch_lock_state(connection.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, number, 0, 0, 0);
        desktopHasSeenIt();
        throughout(100ms, [this] { return keys->dispatch(); });
    }
};

TEST_F(X11HotKeysTest, GrabsAndLetsGoAsTheFakeDoes) {
    const auto check = [this](HotKeys& real, const std::function<int()>& tapOnce) {
        auto first = real.grab({'A'}, count());
        ASSERT_TRUE(first);
        EXPECT_EQ(tapOnce(), 1);
        EXPECT_EQ(real.grab({'A'}, count()).error(), HotKeys::Error::takenByAnother);
        first->reset();
        EXPECT_EQ(tapOnce(), 0);
        const auto again = real.grab({'A'}, count());
        EXPECT_TRUE(again);
        EXPECT_EQ(tapOnce(), 1);
    };
    check(*keys, [this] { return toldOf(rightOfCaps); });
    FakeHotKeys fake;
    check(fake, [&] {
        const int before = presses;
        fake.press('A');
        return presses - before;
    });
}

TEST_F(X11HotKeysTest, IsToldWhichAnotherProgramHolds) {
    X11HotKeys other;
    auto theirs = other.grab({'N'}, [] {});
    ASSERT_TRUE(theirs);
    EXPECT_EQ(keys->grab({'N'}, count()).error(), HotKeys::Error::takenByAnother);
    const auto mine = keys->grab({'A'}, count());
    EXPECT_EQ(toldOf(rightOfCaps), 1);
    theirs->reset();
    EXPECT_TRUE(eventually([&] { return keys->grab({'N'}, count()).has_value(); }));
}

TEST_F(X11HotKeysTest, HearsOnePressOnceWhateverTheLockKeysSay) {
    const auto handle = keys->grab({'A'}, count());
    for (const std::uint8_t lock : {capsLock, numLock, capsLock}) {
        tap(lock);
        EXPECT_EQ(toldOf(rightOfCaps), 1) << int{lock};
    }
    send(XCB_KEY_PRESS, control);
    send(XCB_KEY_PRESS, alt);
    send(XCB_KEY_PRESS, rightOfCaps);
    // Longer than it takes a key to repeat.
    throughout(900ms, [this] { return keys->dispatch(); });
    EXPECT_EQ(presses, 4);
    for (const std::uint8_t key : {rightOfCaps, alt, control}) {
        send(XCB_KEY_RELEASE, key);
    }
    EXPECT_EQ(toldOf(rightOfCaps), 1);
}

TEST_F(X11HotKeysTest, FollowsTheLetterThroughLayouts) {
    const auto handle = keys->grab({'A'}, count());
    const auto note = keys->grab({'N'}, count());
    setLayout("fr");
    EXPECT_EQ(toldOf(rightOfTab), 1) << "A on a French keyboard";
    EXPECT_EQ(toldOf(rightOfCaps), 0) << "Q there";
    setLayout("ru");
    EXPECT_EQ(toldOf(rightOfCaps), 1) << "no Latin letter anywhere: by its place";
    setLayout("ru,fr");
    EXPECT_EQ(toldOf(rightOfTab), 1) << "the only layout that has it, although another is in use";
    setLayout("us,fr");
    EXPECT_EQ(toldOf(rightOfCaps), 1);
    useLayout(1);
    EXPECT_EQ(toldOf(rightOfTab), 1) << "the layout in use";
    EXPECT_EQ(toldOf(rightOfCaps), 0);
    setLayout("us,ru");
    useLayout(1);
    EXPECT_EQ(toldOf(rightOfCaps), 1);
    EXPECT_EQ(toldOf(sixthOfLowest), 1);
}

TEST_F(X11HotKeysTest, HandlersMayLetGoOfKeysAndHandlesMayOutliveAll) {
    std::expected<Subscription, HotKeys::Error> handle = keys->grab({'A'}, [&] {
        ++presses;
        handle->reset();
    });
    EXPECT_EQ(toldOf(rightOfCaps), 1);
    EXPECT_EQ(toldOf(rightOfCaps), 0);
    handle = keys->grab({'A'}, count());
    ASSERT_TRUE(handle);
    setenv("WAYLAND_DISPLAY", "wayland-0", 1);
    EXPECT_EQ(X11HotKeys{}.grab({'A'}, count()).error(), HotKeys::Error::unsupported);
    unsetenv("WAYLAND_DISPLAY");
    desktop.reset();
    EXPECT_FALSE(keys->dispatch() && keys->dispatch());
    keys.reset();
}

} // namespace kippo
