#include "Desktop/MessageBus.h"
#include "Executable/Shell.h"
#include "Fakes/FakeDefaults.h"
#include "Fakes/FakeScheduler.h"
#include "Focus/FocusCommands.h"
#include "Platform/Qt/DBusInstance.h"

#include <gmock/gmock.h>

namespace kippo {

using testing::HasSubstr;

TEST(SingleInstance, ASecondStartReachesTheFirstAndItsEndBlocksNothing) {
    const MessageBus bus;
    ASSERT_TRUE(bus.isThere());
    std::optional<DBusInstance> first{bus.connect("first")};
    ASSERT_TRUE(first->claim());
    int shown = 0;
    first->onOpenSettings = [&](const std::string&) { ++shown; };
    const auto start = [&] { return DBusInstance{bus.connect("second")}.claim(); };
    EXPECT_FALSE(MessageBus::aside(start));
    EXPECT_EQ(shown, 1);
    first.reset();
    EXPECT_TRUE(MessageBus::aside(start));
    QDBusConnection::disconnectFromBus(QStringLiteral("first"));
    QDBusConnection::disconnectFromBus(QStringLiteral("second"));
}

TEST(SingleInstance, WithoutABusALockedFileTells) {
    const PrivateHome home;
    setenv("XDG_RUNTIME_DIR", home.path().c_str(), 1);
    std::optional<DBusInstance> first{QDBusConnection{QStringLiteral("none")}};
    EXPECT_TRUE(first->claim());
    EXPECT_FALSE(DBusInstance{QDBusConnection{QStringLiteral("none")}}.claim());
    first.reset();
    EXPECT_TRUE(DBusInstance{QDBusConnection{QStringLiteral("none")}}.claim()) << "the file that stays blocks nothing";
    setenv("XDG_RUNTIME_DIR", home.path("none").c_str(), 1);
    EXPECT_TRUE(DBusInstance{QDBusConnection{QStringLiteral("none")}}.claim()) << "nowhere to tell: each may run";
}

TEST(SingleInstance, TheTerminalSpeaksToIt) {
    const MessageBus bus;
    ASSERT_TRUE(bus.isThere());
    const Shell shell;
    const auto run = [&](const std::string& line) {
        return MessageBus::aside(
            [&] { return shell.run(line, "HOME=" + shell.path() + " DBUS_SESSION_BUS_ADDRESS=" + bus.address()); });
    };
    EXPECT_EQ(run("kippo focus").output, "Kippo is not running. Start it with “kippo”.\n");
    EXPECT_EQ(run("kippo open agents").status, 1);
    EXPECT_THAT(shell.run("kippo focus").output, HasSubstr("No session bus"));

    FakeScheduler scheduler;
    FakeDefaults defaults;
    defaults.registerDefault("focusMinutes", std::int64_t{25});
    FocusStore store{scheduler, defaults};
    std::vector<std::string> opened;
    DBusInstance instance{bus.connect("ours")};
    ASSERT_TRUE(instance.claim());
    EXPECT_THAT(run("kippo focus").output, HasSubstr("starting"));
    instance.onOpenSettings = [&](const std::string& page) { opened.push_back("settings/" + page); };
    instance.onOpenPage = [&](const std::string& page) -> std::expected<void, std::string> {
        if (page == "mail") {
            return std::unexpected{"There is no page “mail”."};
        }
        opened.push_back(page);
        return {};
    };
    instance.onFocus = [&](const std::string& command, int minutes) {
        return FocusCommands::run(store, scheduler.now(), command, minutes);
    };

    for (const char* line : {"kippo open agents", "kippo open settings", "kippo open settings notch"}) {
        EXPECT_EQ(run(line).status, 0) << line;
    }
    EXPECT_THAT(opened, testing::ElementsAre("agents", "settings/", "settings/notch"));
    EXPECT_EQ(run("kippo open mail").output, "There is no page “mail”.\n");
    EXPECT_EQ(run("kippo focus").output, "Ready when you are (25:00)\n0 focus sessions today\n");
    EXPECT_EQ(run("kippo focus pause").status, 1);
    run("kippo focus start 50");
    scheduler.advance(Seconds{61.5});
    EXPECT_EQ(run("kippo focus pause").output,
              "Heads down: paused with 48:59 left\nRound 1 of 4 · 0 focus sessions today\n");
    EXPECT_EQ(run("kippo focus start").output, "Heads down: 48:59 left\nRound 1 of 4 · 0 focus sessions today\n");
    EXPECT_THAT(run("kippo focus --json").output, HasSubstr(R"("running":true,"paused":false,"remaining":2938.5)"));
    EXPECT_EQ(run("kippo focus reset").status, 0);
    EXPECT_EQ(store.phase(), FocusStore::Phase::idle);
    EXPECT_EQ(run("kippo focus start 1441").status, 1);
    QDBusConnection::disconnectFromBus(QStringLiteral("ours"));
}

} // namespace kippo
