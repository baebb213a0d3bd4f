#include "PanelFixture.h"
#include "Samples.h"

#include <gtest/gtest.h>

namespace kippo {
namespace {

using Mode = NotchModel::Mode;

struct AppDelegateTest : testing::Test, PanelFixture {};

TEST_F(AppDelegateTest, AnnouncesForAsLongAsItMatters) {
    struct {
        AgentStatus status;
        Seconds shown;
    } const cases[] = {{AgentStatus::done(), Seconds{2.5}}, {AgentStatus::needsYou("?"), Seconds{4}}};
    for (const auto& [status, shown] : cases) {
        application.agentAlert(sampleSession("a", status));
        scheduler.advance(shown - Seconds{0.1});
        EXPECT_EQ(mode(), Mode::peek);
        scheduler.advance(Seconds{0.2});
        EXPECT_EQ(mode(), Mode::collapsed);
    }
}

TEST_F(AppDelegateTest, AnnouncesNothingToWhoWantsNone) {
    defaults.set("agentAlerts", false);
    application.agentAlert(sampleSession("a", AgentStatus::done()));
    EXPECT_EQ(mode(), Mode::collapsed);
}

TEST_F(AppDelegateTest, WingsAreOpenWhileSomethingGoesOn) {
    application.showSessions(std::vector{sampleSession("a", AgentStatus::working())});
    EXPECT_EQ(mode(), Mode::live);
    defaults.set("showLiveActivity", false);
    EXPECT_EQ(mode(), Mode::collapsed);
    defaults.set("showLiveActivity", true);
    EXPECT_EQ(mode(), Mode::live);
    application.showSessions(std::vector{sampleSession("a", AgentStatus::done())});
    EXPECT_EQ(mode(), Mode::collapsed);
}

TEST_F(AppDelegateTest, SaysWhenThePageIsOnScreen) {
    std::vector<bool> heard;
    application.onAgentsPageVisible = [&](bool visible) { heard.push_back(visible); };
    panel.notch.open();
    EXPECT_TRUE(panel.agents.isVisible());
    application.notch().collapse();
    EXPECT_EQ(heard, (std::vector{true, false}));
}

TEST_F(AppDelegateTest, ReducedMotionReachesEverythingThatMoves) {
    defaults.set("reducedMotion", true);
    EXPECT_TRUE(panel.notch.reducedMotion());
    panel.notch.open();
    EXPECT_FALSE(panel.stage.isMoving());
    EXPECT_EQ(panel.stage.shape(), panel.stage.target());
}

} // namespace
} // namespace kippo
