#pragma once

#include "Support/Time.h"

namespace kippo {

/// A moment as the clock and calendar on the user's wall show it.
struct LocalTime {
    int year = 1970;
    int month = 1;   ///< 1 to 12
    int day = 1;     ///< 1 to 31
    int hour = 0;    ///< 0 to 23
    int minute = 0;  ///< 0 to 59
    int weekday = 4; ///< 0 is Sunday

    bool operator==(const LocalTime&) const = default;
};

LocalTime localTime(Date date);

/// The first moment of the user's local day that lies `offset` days from the one that holds `date`. Right where a day
/// has 23 or 25 hours, and where clocks skip midnight.
Date startOfLocalDay(Date date, int offset = 0);

/// The moment at which the clock shows `hour` o'clock on the local day of `date`.
Date atHour(Date date, int hour);

} // namespace kippo
