#include "Desktop/MessageBus.h"
#include "Fakes/FakeScheduler.h"
#include "Platform/Qt/DesktopIdleTime.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <gtest/gtest.h>

namespace kippo {

using namespace std::chrono_literals;

TEST(X11IdleTime, CountsFromTheLastInputAndTellsNothingWithoutAServer) {
    unsetenv("WAYLAND_DISPLAY");
    auto desktop = XDesktop::start(640, 480);
    ASSERT_TRUE(desktop);
    setenv("DISPLAY", desktop->display().c_str(), 1);
    X11IdleTime idle;
    EXPECT_TRUE(eventually([&] { return idle.sinceLastInput() > 300ms; }));
    desktop->movePointer(100, 100);
    EXPECT_TRUE(eventually([&] { return idle.sinceLastInput() < 100ms; }));
    setenv("WAYLAND_DISPLAY", "wayland-0", 1);
    EXPECT_FALSE(X11IdleTime{}.isAvailable()) << "this server would know of X windows alone";
    unsetenv("WAYLAND_DISPLAY");
    desktop.reset();
    EXPECT_EQ(idle.sinceLastInput(), std::nullopt);
    EXPECT_EQ(X11IdleTime{}.sinceLastInput(), std::nullopt);
}

namespace {

/// GNOME's compositor, as far as it tells of idle time.
class Compositor final : public QDBusVirtualObject {
public:
    qulonglong idle = 0; ///< milliseconds
    bool isSilent = false;
    int asked = 0;

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
        ++asked;
        return isSilent || bus.send(message.createReply(idle));
    }
};

} // namespace

TEST(MutterIdleTime, AnswersAsOfTheQuestionBefore) {
    const MessageBus bus;
    ASSERT_TRUE(bus.isThere());
    QDBusConnection theirs = bus.connect("theirs");
    FakeScheduler scheduler;
    MutterIdleTime idle{scheduler, bus.connect("ours")};
    EXPECT_EQ(idle.sinceLastInput(), std::nullopt) << "nobody there";

    Compositor compositor;
    compositor.idle = 61500;
    theirs.registerVirtualObject(QStringLiteral("/org/gnome/Mutter/IdleMonitor/Core"), &compositor);
    ASSERT_TRUE(theirs.registerService(QStringLiteral("org.gnome.Mutter.IdleMonitor")));
    EXPECT_TRUE(MessageBus::processed([&] { return idle.sinceLastInput() == Seconds{61.5}; }));
    // An old answer tells nothing of now, and one that does not come leaves nobody waiting.
    compositor.isSilent = true;
    const int asked = compositor.asked;
    EXPECT_TRUE(MessageBus::processed([&] { return idle.sinceLastInput() && compositor.asked > asked; }));
    scheduler.advance(Seconds{90});
    EXPECT_EQ(idle.sinceLastInput(), std::nullopt);
    QDBusConnection::disconnectFromBus(QStringLiteral("theirs"));
    QDBusConnection::disconnectFromBus(QStringLiteral("ours"));
}

} // namespace kippo
