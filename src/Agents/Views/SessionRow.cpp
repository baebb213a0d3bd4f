#include "Agents/Views/SessionRow.h"

#include "Theme/Texts.h"

#include <cmath>

namespace kippo {

namespace {

QStringList portLabels(const std::vector<int>& ports) {
    constexpr std::size_t shown = 2;
    QStringList labels;
    for (std::size_t i = 0; i < std::min(ports.size(), shown); ++i) {
        labels.append(QStringLiteral(":%1").arg(ports[i]));
    }
    if (ports.size() > shown) {
        labels.append(QStringLiteral("+%1").arg(ports.size() - shown));
    }
    return labels;
}

QString spokenRow(const SessionRow& row) { return spokenLine({row.title, row.project, row.sentence, row.timeline}); }

} // namespace

SessionRow sessionRow(const AgentSession& session, Date now) {
    SessionRow row;
    row.id = QString::fromStdString(session.id);
    row.kind = AgentLook::look(session.kind);
    row.status = AgentLook::look(session.status.value);
    row.title = oneLine(session.title());
    const QString project = oneLine(session.project());
    row.project = project == row.title ? QString{} : project;
    row.sentence = oneLine(session.sentence(true));
    if (session.prompt) {
        const QString request = oneLine(*session.prompt);
        row.request = row.sentence.contains(request.left(40)) ? QString{} : request;
    }
    row.timeline = QString::fromStdString(session.timeline(now));
    if (session.memoryKB > 0) {
        row.memory = QString::fromStdString(Formatters::memory(session.memoryKB));
        row.cpu = QStringLiteral("%1% CPU").arg(std::lround(session.cpu));
    }
    row.ports = portLabels(session.ports);
    row.spoken = spokenRow(row);
    return row;
}

} // namespace kippo
