#include "Agents/Views/AgentsViewModel.h"

#include "Agents/LiveSummary.h"

namespace kippo {

namespace {

// Phrases like "Active 4 min so far" change by the minute; half of that is never wrong for long.
constexpr Seconds timelineInterval{30};
constexpr Seconds timelineTolerance{5};

/// "1 needs you", "2 need you"; empty for none.
QString counted(int count, QLatin1StringView one, QLatin1StringView more) {
    return count == 0 ? QString{} : QStringLiteral("%1 %2").arg(count).arg(count == 1 ? one : more);
}

} // namespace

AgentsViewModel::AgentsViewModel(Scheduler& scheduler, QObject* parent) : QObject(parent), scheduler_(scheduler) {}

void AgentsViewModel::show(std::span<const AgentSession> sessions) {
    current_.assign(sessions.begin(), sessions.end());
    format();
    sumUp();
    emit summaryChanged();
}

void AgentsViewModel::setVisible(bool visible) {
    if (isVisible_ == visible) {
        return;
    }
    isVisible_ = visible;
    clock_.cancel();
    if (visible) {
        format();
        clock_ = scheduler_.every(timelineInterval, timelineTolerance, [this] { format(); });
    }
    emit visibleChanged();
}

void AgentsViewModel::format() {
    std::vector<SessionRow> rows;
    rows.reserve(current_.size());
    for (const AgentSession& session : current_) {
        rows.push_back(sessionRow(session, scheduler_.now()));
    }
    sessions_.show(std::move(rows));
}

void AgentsViewModel::sumUp() {
    using namespace Qt::StringLiterals;
    const LiveSummary live = liveSummary(current_).value_or(LiveSummary{});
    const bool allRest = live.working == 0 && live.needsYou == 0;
    needsYouText_ = counted(live.needsYou, "needs you"_L1, "need you"_L1);
    workingText_ = counted(live.working, "working"_L1, "working"_L1);
    restText_ = allRest ? counted(static_cast<int>(current_.size()), "session"_L1, "sessions"_L1) : QString{};
}

} // namespace kippo
