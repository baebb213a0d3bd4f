#pragma once

#include "Support/Scheduler.h"

namespace kippo::Clocks {

/// From the kernel's monotonic clock and the one that goes on while the machine is suspended.
Uptime uptime();

} // namespace kippo::Clocks
