#pragma once

#include "Support/Time.h"

#include <string>

namespace kippo::FocusCountdown {

/// What a clock shows that has `left` to go: minutes and seconds, up to the next whole second, such as "1:02" for
/// 61.2 s.
std::string clockText(Seconds left);

/// How long the clock goes on showing what it shows with `left` to go, so that it need be drawn no oftener.
Seconds untilNextSecond(Seconds left);

} // namespace kippo::FocusCountdown
