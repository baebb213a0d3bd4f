#include "App/DemoDirector.h"
#include "Fakes/FakeScheduler.h"

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

} // namespace
} // namespace kippo
