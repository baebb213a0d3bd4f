#include "Platform/Linux/Clocks.h"

#include <ctime>

namespace kippo::Clocks {

namespace {

Seconds read(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return Seconds{static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9};
}

} // namespace

Uptime uptime() { return {.awake = read(CLOCK_MONOTONIC), .total = read(CLOCK_BOOTTIME)}; }

} // namespace kippo::Clocks
