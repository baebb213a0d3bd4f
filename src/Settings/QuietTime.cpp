#include "Settings/QuietTime.h"

#include "Support/LocalTime.h"

#include <fmt/format.h>

namespace kippo {

namespace {

/// "midnight", or the time of day, with the day where that is not today's.
std::string timeOfDay(Date date, Date now) {
    if (date == startOfLocalDay(now, 1)) {
        return "midnight";
    }
    const LocalTime time = localTime(date);
    std::string clock = fmt::format("{:02}:{:02}", time.hour, time.minute);
    if (startOfLocalDay(date) == startOfLocalDay(now, 1)) {
        clock += " tomorrow";
    } else if (startOfLocalDay(date) != startOfLocalDay(now)) {
        clock += fmt::format(" on {:04}-{:02}-{:02}", time.year, time.month, time.day);
    }
    return clock;
}

} // namespace

std::string quietSentence(const Coach::Quiet& quiet, Date now) {
    if (quiet.until) {
        return "He is quiet until " + timeOfDay(*quiet.until, now) + ".";
    }
    if (quiet.nightUntil) {
        return "He says nothing about bed until " + timeOfDay(*quiet.nightUntil, now) + ".";
    }
    return {};
}

} // namespace kippo
