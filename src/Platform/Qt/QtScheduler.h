#pragma once

#include "Support/Scheduler.h"

namespace kippo {

/// Time on Qt's event loop. Work is due by the wall clock, so that a laptop that slept does not wait longer; and by the
/// steady clock, so that it does not wait for ever where the wall clock was set back. Main thread only.
class QtScheduler final : public Scheduler {
public:
    Date now() const override;
    Uptime uptime() const override;
    [[nodiscard]] Timer after(Seconds delay, std::function<void()> work) override;
    [[nodiscard]] Timer every(Seconds interval, Seconds tolerance, std::function<void()> work) override;
};

} // namespace kippo
