#include "Focus/FocusCountdown.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace kippo::FocusCountdown {

namespace {

/// Dates are floating-point numbers: this much more than a whole second is that second.
constexpr double grain = 1e-4;

long wholeSeconds(Seconds left) { return std::lround(std::ceil(std::max(left.count() - grain, 0.0))); }

} // namespace

std::string clockText(Seconds left) {
    const long seconds = wholeSeconds(left);
    return fmt::format("{}:{:02}", seconds / 60, seconds % 60);
}

Seconds untilNextSecond(Seconds left) {
    return left - Seconds{static_cast<double>(std::max(wholeSeconds(left) - 1, 0L))};
}

} // namespace kippo::FocusCountdown
