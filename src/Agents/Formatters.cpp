#include "Agents/AgentModels.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace kippo::Formatters {

namespace {

std::int64_t wholeSeconds(double seconds) {
    return std::isfinite(seconds) && seconds > 0 ? static_cast<std::int64_t>(std::min(seconds, 9e15)) : 0;
}

} // namespace

std::string tokens(std::int64_t count) {
    if (count > 999999) {
        return fmt::format("{:.1f}M", static_cast<double>(count) / 1e6);
    }
    return count > 999 ? fmt::format("{:.1f}K", static_cast<double>(count) / 1e3) : fmt::format("{}", count);
}

std::string friendlyDuration(double seconds) {
    const std::int64_t whole = wholeSeconds(seconds);
    if (whole < 60) {
        return "under a minute";
    }
    if (whole < 3600) {
        return fmt::format("{} min", whole / 60);
    }
    if (whole < 86400) {
        return fmt::format("{} hr", whole / 3600);
    }
    return whole < 172800 ? "1 day" : fmt::format("{} days", whole / 86400);
}

std::string duration(double seconds) {
    const std::int64_t whole = wholeSeconds(seconds);
    if (whole < 3600) {
        return fmt::format("{}:{:02}", whole / 60, whole % 60);
    }
    return fmt::format("{}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
}

std::string memory(std::int64_t kilobytes) {
    if (kilobytes < 1024) {
        return fmt::format("{} KB", std::max<std::int64_t>(kilobytes, 0));
    }
    if (kilobytes < 1024 * 1024) {
        return fmt::format("{} MB", (kilobytes + 512) / 1024);
    }
    return fmt::format("{:.1f} GB", static_cast<double>(kilobytes) / (1024 * 1024));
}

std::string cost(double dollars) {
    const double cents = std::isfinite(dollars) ? std::clamp(dollars, 0.0, 1e12) * 100 : 0;
    if (cents > 0 && cents < 1) {
        return "under $0.01";
    }
    const auto whole = static_cast<std::int64_t>(std::llround(cents));
    std::string digits = fmt::format("{}", whole / 100);
    for (std::size_t place = digits.size(); place > 3; place -= 3) {
        digits.insert(place - 3, 1, ',');
    }
    return fmt::format("${}.{:02}", digits, whole % 100);
}

} // namespace kippo::Formatters
