#include "Agents/Views/AgentsViewModel.h"

#include "Fakes/FakeScheduler.h"
#include "Samples.h"

#include <gtest/gtest.h>

namespace kippo {
namespace {

struct AgentsViewModelTest : testing::Test {
    FakeScheduler scheduler;
    AgentsViewModel agents{scheduler};

    QString timeline() { return column(*agents.sessions(), "timeline")[0]; }
};

TEST_F(AgentsViewModelTest, SumsUpWhatMatters) {
    const auto needs = sampleSession("n", AgentStatus::needsYou("?"));
    const auto needs2 = sampleSession("n2", AgentStatus::needsYou("?"));
    const auto works = sampleSession("w", AgentStatus::working());
    const auto done = sampleSession("d", AgentStatus::done());
    const auto idle = sampleSession("i", AgentStatus::idle());
    struct {
        std::vector<AgentSession> sessions;
        QString needsYou, working, rest;
    } const cases[] = {
        {{}, "", "", ""},
        {{needs, works, done}, "1 needs you", "1 working", ""},
        {{needs, needs2}, "2 need you", "", ""},
        {{works, idle}, "", "1 working", ""},
        {{done}, "", "", "1 session"},
        {{done, idle}, "", "", "2 sessions"},
    };
    for (const auto& [sessions, needsYou, working, rest] : cases) {
        agents.show(sessions);
        EXPECT_EQ(agents.needsYouText(), needsYou);
        EXPECT_EQ(agents.workingText(), working);
        EXPECT_EQ(agents.restText(), rest);
        EXPECT_EQ(agents.isEmpty(), sessions.empty());
    }
}

TEST_F(AgentsViewModelTest, TimesGoOnWhileThePageIsOnScreenAndOnlyThen) {
    agents.show(std::vector{sampleSession("a", AgentStatus::done(), scheduler.now())});
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    scheduler.advance(Seconds{300});
    EXPECT_EQ(timeline(), "Finished just now");

    agents.setVisible(true);
    EXPECT_EQ(timeline(), "Finished 5 min ago");
    scheduler.advance(Seconds{60});
    EXPECT_EQ(timeline(), "Finished 6 min ago");

    agents.setVisible(false);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
}

} // namespace
} // namespace kippo
