#include "Support/LocalDay.h"

#include <cmath>
#include <compare>
#include <ctime>

namespace kippo {

namespace {

struct Day {
    int year = 0;
    int month = 0;
    int day = 0;

    auto operator<=>(const Day&) const = default;
};

std::tm localTime(std::time_t seconds) {
    std::tm local{};
    ::localtime_r(&seconds, &local);
    return local;
}

Day dayOf(const std::tm& local) { return {.year = local.tm_year, .month = local.tm_mon, .day = local.tm_mday}; }

} // namespace

Date startOfLocalDay(Date date, int offset) {
    std::tm noon = localTime(static_cast<std::time_t>(std::floor(unixSeconds(date))));
    noon.tm_mday += offset;
    noon.tm_hour = 12;
    noon.tm_min = noon.tm_sec = 0;
    noon.tm_isdst = -1;
    std::time_t inside = std::mktime(&noon);
    // mktime says little of a midnight that is skipped or comes twice, so the first second of the day is searched for.
    const Day wanted = dayOf(noon);
    std::time_t before = inside - 36 * std::time_t{3600};
    while (inside - before > 1) {
        const std::time_t middle = before + (inside - before) / 2;
        (dayOf(localTime(middle)) < wanted ? before : inside) = middle;
    }
    return dateFromUnix(static_cast<double>(inside));
}

} // namespace kippo
