#include "Support/LocalTime.h"

#include <chrono>
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

std::tm brokenDown(std::time_t seconds) {
    std::tm local{};
    ::localtime_r(&seconds, &local);
    return local;
}

std::tm brokenDown(Date date) {
    return brokenDown(std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count());
}

Day dayOf(const std::tm& local) { return {.year = local.tm_year, .month = local.tm_mon, .day = local.tm_mday}; }

} // namespace

LocalTime localTime(Date date) {
    const std::tm local = brokenDown(date);
    return {.year = local.tm_year + 1900,
            .month = local.tm_mon + 1,
            .day = local.tm_mday,
            .hour = local.tm_hour,
            .minute = local.tm_min,
            .weekday = local.tm_wday};
}

Date startOfLocalDay(Date date, int offset) {
    std::tm noon = brokenDown(date);
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
        (dayOf(brokenDown(middle)) < wanted ? before : inside) = middle;
    }
    return dateFromUnix(static_cast<double>(inside));
}

Date atHour(Date date, int hour) {
    std::tm local = brokenDown(date);
    local.tm_hour = hour;
    local.tm_min = local.tm_sec = 0;
    local.tm_isdst = -1;
    return dateFromUnix(static_cast<double>(std::mktime(&local)));
}

} // namespace kippo
