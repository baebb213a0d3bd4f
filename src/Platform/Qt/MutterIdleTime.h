#pragma once

#include "Support/IdleTime.h"
#include "Support/Scheduler.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
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
    struct Question {
        QDBusPendingCall call;
        /// Of the moment of the question, so that an answer that took long does not seem new.
        Seconds at{0};
    };

    void takeAnswer();
    void ask();

    Scheduler& scheduler_;
    QDBusConnection bus_;
    std::optional<Answer> last_;
    std::optional<Question> question_; ///< the one under way
};

} // namespace kippo
