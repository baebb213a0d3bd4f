#include "App/DemoDirector.h"
#include "App/DemoMachine.h"
#include "Fakes/FakeDefaults.h"
#include "Fakes/FakeDesktopLook.h"
#include "Fakes/FakeScheduler.h"
#include "Fakes/FakeSounds.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

namespace kippo {
namespace {

struct DemoTest : testing::Test {
    FakeScheduler scheduler;
    DemoDirector director{scheduler};
    std::set<AgentStatus::Case> seen;
    std::vector<AgentStatus::Case> alerts;
    std::vector<std::size_t> sizes; ///< of each list that was shown

    void SetUp() override {
        director.onSessions = [this](const std::vector<AgentSession>& now) {
            sizes.push_back(now.size());
            EXPECT_TRUE(std::ranges::is_sorted(now, {}, [](const auto& session) { return session.status.value; }));
            for (const AgentSession& session : now) {
                seen.insert(session.status.value);
            }
        };
        director.onAlert = [this](const AgentSession& session) { alerts.push_back(session.status.value); };
    }
};

TEST_F(DemoTest, ThePlayShowsEveryStatusAndStartsOver) {
    director.start();
    scheduler.advance(Seconds{120});
    EXPECT_EQ(seen.size(), 4U);
    EXPECT_GE(std::ranges::count(sizes, 0U), 2);
    ASSERT_GE(alerts.size(), 3U);
    EXPECT_EQ(alerts[0], AgentStatus::Case::needsYou);
    EXPECT_EQ(alerts[1], AgentStatus::Case::done);

    director.stop();
    EXPECT_EQ(sizes.back(), 0U);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    director.start();
    scheduler.advance(Seconds{2});
    EXPECT_EQ(sizes.back(), 1U);
}

TEST(DemoMachineTest, ActionsWorkOnTheSamplesAlone) {
    FakeScheduler scheduler;
    FakeDefaults defaults;
    FakeSounds sounds;
    Stores stores{scheduler, defaults, sounds};
    FakeDesktopLook look;
    Panel panel{stores, scheduler, defaults, look};
    const DemoMachine machine{panel, scheduler};
    LeftBehindViewModel& page = panel.leftBehind;
    EXPECT_EQ(page.processes()->rowCount(), 3);
    page.hideAll();
    EXPECT_EQ(page.countText(), "");
    page.scan();
    EXPECT_TRUE(page.isScanning());
    scheduler.advance(Seconds{5});
    const auto before = page.leftovers()->rows().front().id;
    page.trash(before);
    EXPECT_NE(page.leftovers()->rows().front().id, before);
    page.undoTrash();
    EXPECT_EQ(page.leftovers()->rows().front().id, before);
    EXPECT_EQ(page.undoText(), "");
}

} // namespace
} // namespace kippo
