#include "Agents/Views/AgentsViewModel.h"

#include "Theme/Texts.h"

#include <algorithm>

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

AgentsViewModel::AgentsViewModel(Scheduler& scheduler, QObject* parent)
    : QObject(parent), scheduler_(scheduler), stopping_(scheduler) {
    stopping_.onStop = [this](Pid pid) {
        if (onStop) {
            onStop(pid);
        }
    };
    stopping_.onChange = [this] { showStop(); };
}

void AgentsViewModel::show(std::span<const AgentSession> sessions, std::size_t clearable) {
    current_.assign(sessions.begin(), sessions.end());
    if (!expandedId_.isEmpty() && !expanded()) {
        expand({});
    }
    format();
    sumUp(clearable);
    emit summaryChanged();
}

void AgentsViewModel::setSection(Section section) {
    if (section_ != section) {
        section_ = section;
        stopping_.withdraw();
        emit sectionChanged();
    }
}

void AgentsViewModel::toggle(const QString& id) { expand(id == expandedId_ ? QString{} : id); }

void AgentsViewModel::dismiss() const {
    const AgentSession* session = expanded();
    if (session && onDismiss) {
        // The list that it is part of changes at once.
        onDismiss(AgentSession{*session});
    }
}

void AgentsViewModel::stop() {
    if (const AgentSession* session = expanded(); session && session->rootPID) {
        stopping_.click(*session->rootPID);
    }
}

void AgentsViewModel::openFolder() const {
    const AgentSession* session = expanded();
    if (session && session->cwd && onOpenFolder) {
        onOpenFolder(*session->cwd);
    }
}

void AgentsViewModel::copySessionId() const {
    const AgentSession* session = expanded();
    if (session && onCopy) {
        onCopy(session->id);
    }
}

void AgentsViewModel::openPort(int port) const {
    if (onOpenAddress) {
        onOpenAddress("http://localhost:" + std::to_string(port));
    }
}

void AgentsViewModel::clearFinished() const {
    if (onClear) {
        onClear();
    }
}

void AgentsViewModel::showProblem(std::string_view sentence) {
    if (const QString problem = oneLine(sentence); problem != problem_) {
        problem_ = problem;
        emit problemChanged();
    }
}

void AgentsViewModel::setLights(bool shown) {
    if (shown != hasLights_) {
        hasLights_ = shown;
        emit lightsChanged();
    }
}

void AgentsViewModel::setVisible(bool visible) {
    if (isVisible_ == visible) {
        return;
    }
    isVisible_ = visible;
    clock_.cancel();
    stopping_.withdraw();
    if (!visible) {
        hiddenAt_ = scheduler_.now();
    } else {
        if (scheduler_.now() - hiddenAt_ > memory) {
            beginAnew();
        }
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
    if (const AgentSession* session = expanded()) {
        detail_.show(*session);
    }
    showStop();
}

void AgentsViewModel::expand(const QString& id) {
    if (expandedId_ == id) {
        return;
    }
    stopping_.withdraw();
    showProblem({});
    expandedId_ = id;
    if (const AgentSession* session = expanded()) {
        detail_.show(*session);
    }
    showStop();
    emit expandedIdChanged();
}

void AgentsViewModel::showStop() {
    const AgentSession* session = expanded();
    const Pid pid = session ? session->rootPID.value_or(0) : 0;
    stopping_.follow({pid});
    const std::string_view label = stopping_.label(pid);
    detail_.showStop(QString::fromUtf8(label.data(), static_cast<qsizetype>(label.size())),
                     stopping_.state(pid) == StopConfirmation::State::asking);
}

void AgentsViewModel::beginAnew() {
    expand({});
    setSection(Section::Sessions);
    emit begunAnew();
}

QString AgentsViewModel::spoken() const {
    QStringList parts{QStringLiteral("Agents"), needsYouText_, workingText_, restText_};
    parts.removeAll(QString{});
    return parts.join(QStringLiteral(", "));
}

const AgentSession* AgentsViewModel::expanded() const {
    const auto found = std::ranges::find(current_, expandedId_.toStdString(), &AgentSession::id);
    return expandedId_.isEmpty() || found == current_.end() ? nullptr : &*found;
}

void AgentsViewModel::sumUp(std::size_t clearable) {
    using namespace Qt::StringLiterals;
    live_ = liveSummary(current_).value_or(LiveSummary{});
    const bool allRest = live_.working == 0 && live_.needsYou == 0;
    needsYouText_ = counted(live_.needsYou, "needs you"_L1, "need you"_L1);
    workingText_ = counted(live_.working, "working"_L1, "working"_L1);
    clearText_ = clearable == 0 ? QString{} : QStringLiteral("Clear %1 finished").arg(clearable);
    restText_ = allRest ? counted(static_cast<int>(current_.size()), "session"_L1, "sessions"_L1) : QString{};
}

} // namespace kippo
