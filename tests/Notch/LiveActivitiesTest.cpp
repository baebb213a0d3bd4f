#include "Notch/LiveActivities.h"
#include "NotchFixture.h"
#include "Support/LocalTime.h"

namespace kippo {

using LiveActivitiesTest = NotchFixture;

namespace {

Date localHour(int hour) { return atHour(dateFromUnix(1772539200), hour); }

} // namespace

TEST_F(LiveActivitiesTest, SleepsAtNightWhenNothingElseGoesOn) {
    const AgentsActivity busy = oneWorking();
    const LiveChoice sleeping{SleepingActivity{}, std::nullopt};
    for (const int hour : {23, 0, 4}) {
        EXPECT_EQ(chooseLive({}, {}, defaults, localHour(hour)), sleeping) << hour;
        EXPECT_TRUE(std::holds_alternative<AgentsActivity>(*chooseLive(busy, {}, defaults, localHour(hour)).primary));
    }
    for (const int hour : {5, 22}) {
        EXPECT_EQ(chooseLive({}, {}, defaults, localHour(hour)), LiveChoice{}) << hour;
    }
    defaults.set("mascotNightOwl", false);
    EXPECT_EQ(chooseLive({}, {}, defaults, localHour(2)), LiveChoice{});
    defaults.set("showLiveActivity", false);
    EXPECT_EQ(chooseLive(busy, {}, defaults, localHour(12)), LiveChoice{});
}

TEST_F(LiveActivitiesTest, TheAgentsComeBeforeTheFocusTimer) {
    FocusStore store{scheduler, defaults};
    EXPECT_FALSE(focusActivity(store));
    store.begin(FocusStore::Phase::focus, 25);
    const auto focus = focusActivity(store);
    ASSERT_TRUE(focus);
    const Date night = localHour(2);
    EXPECT_EQ(chooseLive({}, focus, defaults, night), (LiveChoice{*focus, std::nullopt}));
    EXPECT_EQ(chooseLive(oneWorking(), focus, defaults, night), (LiveChoice{oneWorking(), *focus}));

    scheduler.advance(Seconds{60});
    store.pause();
    EXPECT_EQ(focusActivity(store)->paused, Seconds{1440});
    EXPECT_EQ(focusActivity(store)->remaining(night), Seconds{1440});
    store.reset();
    EXPECT_FALSE(focusActivity(store));
}

} // namespace kippo
