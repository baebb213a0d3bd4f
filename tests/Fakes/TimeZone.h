#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

namespace kippo {

/// The zone in which the test lives meanwhile.
class TimeZone {
public:
    explicit TimeZone(const std::string& name) { live(name); }
    ~TimeZone() { live(before_); }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    static void live(const std::string& name) {
        ::setenv("TZ", name.c_str(), 1);
        ::tzset();
    }

    std::string before_ = std::getenv("TZ") ? std::getenv("TZ") : "UTC";
};

} // namespace kippo
