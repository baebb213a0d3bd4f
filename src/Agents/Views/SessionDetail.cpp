#include "Agents/Views/SessionDetail.h"

#include "Theme/Texts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <tuple>

namespace kippo {

namespace {

constexpr std::size_t mostPortsOfProcess = 4;

using Role = KeyedListModel<ProcessRow>::Role;

constexpr std::array roles{
    Role{"name", [](const ProcessRow& row) { return QVariant{row.name}; }},
    Role{"ports", [](const ProcessRow& row) { return QVariant::fromValue(row.ports); }},
    Role{"morePorts", [](const ProcessRow& row) { return QVariant{row.morePorts}; }},
    Role{"memory", [](const ProcessRow& row) { return QVariant{row.memory}; }},
    Role{"cpu", [](const ProcessRow& row) { return QVariant{row.cpu}; }},
    Role{"spoken", [](const ProcessRow& row) { return QVariant{row.spoken}; }},
};

const std::vector<int>& portsOf(const AgentSession& session, const ProcInfo& child) {
    static const std::vector<int> none;
    const auto found = session.childPorts.find(child.pid);
    return found == session.childPorts.end() ? none : found->second;
}

ProcessRow processRow(const AgentSession& session, const ProcInfo& child) {
    ProcessRow row;
    row.id = QString::number(child.pid);
    row.name = oneLine(child.friendlyName());
    row.ports = firstPorts(portsOf(session, child), mostPortsOfProcess, row.morePorts);
    row.memory = QString::fromStdString(Formatters::memory(child.rssKB));
    row.cpu = QStringLiteral("%1% CPU").arg(std::lround(child.cpu));
    row.spoken = spokenLine({row.name, row.memory, row.cpu});
    return row;
}

/// As the activity's text, with the subject uncut.
std::string wholeText(const AgentActivity& activity) {
    std::string text = activity.text();
    const std::string subject = activity.subject().value_or("");
    const std::size_t at = subject.empty() ? std::string::npos : text.rfind(subject);
    return at == std::string::npos ? text : text.replace(at, subject.size(), *activity.detail);
}

} // namespace

QString usageText(std::int64_t tokens, double cost) {
    if (tokens <= 0 && !(cost > 0)) {
        return {};
    }
    return QString::fromStdString(Formatters::tokens(tokens) + (tokens == 1 ? " token, " : " tokens, ") +
                                  Formatters::cost(cost));
}

QList<int> firstPorts(const std::vector<int>& ports, std::size_t most, QString& more) {
    const std::size_t shown = std::min(ports.size(), most);
    more = ports.size() > shown ? QStringLiteral("+%1").arg(ports.size() - shown) : QString{};
    return {ports.begin(), ports.begin() + static_cast<std::ptrdiff_t>(shown)};
}

SessionDetail::SessionDetail(QObject* parent) : QObject(parent), processes_(roles) {}

void SessionDetail::show(const AgentSession& session) {
    request_ = paragraph(session.prompt.value_or(""));
    reply_ = paragraph(session.summary.value_or(""));
    folder_ = oneLine(session.cwd.value_or(""));
    usage_ = usageText(session.tokensToday, session.costToday);
    canBeStopped_ = session.rootPID.has_value();
    showActivity(session);
    showProcesses(session);
    emit changed();
}

void SessionDetail::showStop(const QString& label, bool isAsking) {
    if (label != stopLabel_ || isAsking != isAskingToStop_) {
        stopLabel_ = label;
        isAskingToStop_ = isAsking;
        emit changed();
    }
}

void SessionDetail::showActivity(const AgentSession& session) {
    activityLabel_.clear();
    activity_.clear();
    if (!session.activity) {
        return;
    }
    const bool isNow = session.status.isWorking() && !session.activity->finished;
    activityLabel_ = isNow ? QStringLiteral("Now") : QStringLiteral("Last");
    activity_ = oneLine(wholeText(*session.activity));
}

void SessionDetail::showProcesses(const AgentSession& session) {
    std::vector<ProcInfo> children = session.children;
    std::ranges::sort(children, {}, [&session](const ProcInfo& child) {
        return std::tuple{portsOf(session, child).empty(), -child.rssKB, child.pid};
    });
    std::vector<ProcessRow> rows;
    std::set<int> told;
    std::int64_t restKB = 0;
    for (const ProcInfo& child : children) {
        if (rows.size() < mostProcesses) {
            rows.push_back(processRow(session, child));
            told.insert(portsOf(session, child).begin(), portsOf(session, child).end());
        } else {
            restKB += child.rssKB;
        }
    }
    moreProcesses_ = children.size() > rows.size() ? QStringLiteral("and %1 more, %2")
                                                         .arg(children.size() - rows.size())
                                                         .arg(QString::fromStdString(Formatters::memory(restKB)))
                                                   : QString{};
    std::vector<int> untold;
    std::ranges::copy_if(session.ports, std::back_inserter(untold), [&told](int port) { return !told.contains(port); });
    if (const QList<int> ports = firstPorts(untold, mostPorts, morePorts_); ports != ports_) {
        ports_ = ports;
        emit portsChanged();
    }
    processes_.show(std::move(rows));
}

} // namespace kippo
