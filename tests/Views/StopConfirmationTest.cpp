#include "Agents/Views/StopConfirmation.h"

#include "Fakes/FakeScheduler.h"

#include <gtest/gtest.h>

namespace kippo {
namespace {

using State = StopConfirmation::State;

struct StopConfirmationTest : testing::Test {
    FakeScheduler scheduler;
    StopConfirmation stopping{scheduler};
    std::vector<Pid> stopped;

    StopConfirmationTest() {
        stopping.onStop = [this](Pid pid) { stopped.push_back(pid); };
        stopping.follow({1, 2});
    }
};

TEST_F(StopConfirmationTest, ASecondClickOnTheSameProcessSoonAfterStopsIt) {
    EXPECT_EQ(stopping.label(1), "Stop this process");
    stopping.click(1);
    EXPECT_EQ(stopping.label(1), "Click again to stop it");
    EXPECT_TRUE(stopped.empty());
    stopping.click(1);
    EXPECT_EQ(stopped, std::vector<Pid>{1});
    stopping.click(1); // it was asked, and takes a moment
    EXPECT_EQ(stopping.label(1), "Stopping…");
    scheduler.advance(StopConfirmation::stubborn);
    EXPECT_EQ(stopping.state(1), State::ready);
    EXPECT_EQ(stopped.size(), 1U);
}

TEST_F(StopConfirmationTest, AnyOtherSecondClickIsAFirstClick) {
    const std::pair<const char*, std::function<void()>> between[] = {
        {"too late", [this] { scheduler.advance(StopConfirmation::patience); }},
        {"on another process, which came to lie under the pointer", [this] { stopping.click(2); }},
        {"the process ended and its id came back",
         [this] {
             stopping.follow({2});
             stopping.follow({1, 2});
         }},
        {"the panel was closed", [this] { stopping.withdraw(); }},
    };
    for (const auto& [name, happen] : between) {
        SCOPED_TRACE(name);
        stopping.click(1);
        happen();
        stopping.click(1);
        EXPECT_EQ(stopping.state(1), State::asking);
        EXPECT_TRUE(stopped.empty());
        stopping.withdraw();
    }
}

TEST_F(StopConfirmationTest, AllOfThemAreThoseThatWereSeen) {
    stopping.click(StopConfirmation::everything);
    stopping.follow({1});
    EXPECT_EQ(stopping.label(StopConfirmation::everything), "Click again to stop them");
    stopping.follow({1, 3});
    EXPECT_EQ(stopping.label(StopConfirmation::everything), "Stop all");

    stopping.click(StopConfirmation::everything);
    stopping.click(StopConfirmation::everything);
    EXPECT_EQ(stopped, std::vector<Pid>{StopConfirmation::everything});
    EXPECT_EQ(stopping.state(3), State::stopping);
}

} // namespace
} // namespace kippo
