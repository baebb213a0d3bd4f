#include "Support/LocalTime.h"

#include "Fakes/TimeZone.h"

#include <gtest/gtest.h>

namespace kippo {

TEST(LocalTimeTest, DaysStartAtMidnightAlsoWhereTheClocksChange) {
    const TimeZone zone{"CET-1CEST,M3.5.0,M10.5.0/3"};
    const Date spring = dateFromUnix(1774738800); // 2026-03-29 00:00 local, a day of 23 hours
    EXPECT_EQ(startOfLocalDay(spring + Seconds{12 * 3600}), spring);
    EXPECT_EQ(startOfLocalDay(spring, 1) - spring, Seconds{23 * 3600});
    EXPECT_EQ(startOfLocalDay(spring, -1) - spring, Seconds{-24 * 3600});
    const Date autumn = dateFromUnix(1792879200); // 2026-10-25 00:00 local, a day of 25 hours
    EXPECT_EQ(startOfLocalDay(autumn + Seconds{24.5 * 3600}), autumn);
    EXPECT_EQ(startOfLocalDay(autumn, 1) - autumn, Seconds{25 * 3600});
    EXPECT_EQ(atHour(autumn, 6) - autumn, Seconds{7 * 3600});
    EXPECT_EQ(localTime(autumn + Seconds{3600 * 3.5}), (LocalTime{2026, 10, 25, 2, 30, 0}));
}

TEST(LocalTimeTest, ADayWithoutMidnightStartsWithItsFirstMoment) {
    const TimeZone zone{"XST5XDT,M3.2.0/0,M11.1.0/1"}; // forward at midnight, back to midnight at one
    const Date noon = dateFromUnix(1772985600);        // 2026-03-08 12:00 local
    EXPECT_EQ(localTime(startOfLocalDay(noon)), (LocalTime{2026, 3, 8, 1, 0, 0}));
    const Date after = dateFromUnix(1793552400); // 2026-11-01 12:00 local
    EXPECT_EQ(after - startOfLocalDay(after), Seconds{13 * 3600});
}

TEST(LocalTimeTest, MomentsBeforeTheEpochAndFractionsFallIntoTheirSecond) {
    const TimeZone zone{"UTC"};
    EXPECT_EQ(localTime(dateFromUnix(-0.5)), (LocalTime{1969, 12, 31, 23, 59, 3}));
}

} // namespace kippo
