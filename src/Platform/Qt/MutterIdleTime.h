#pragma once

#include "Support/IdleTime.h"
#include "Support/Scheduler.h"

#include <QDBusConnection>
#include <memory>
#include <optional>

namespace kippo {

/// Asks GNOME's compositor over the session bus. To wait for no answer, it gives the one to the question before: who
/// asks regularly hears of input one interval late. Tells nothing where nobody answers, and at first.
class MutterIdleTime final : public IdleTime {
public:
    /// `scheduler` tells how old an answer is.
    MutterIdleTime(Scheduler& scheduler, QDBusConnection bus);

    std::optional<Seconds> sinceLastInput() override;

private:
    struct Answer {
        Seconds idle{0};
        Seconds at{0}; ///< by the machine's uptime
    };
    /// What an answer that is under way may still write to when it comes.
    struct State {
        std::optional<Answer> last;
        bool isAsking = false;
    };

    void ask();

    Scheduler& scheduler_;
    QDBusConnection bus_;
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

} // namespace kippo
