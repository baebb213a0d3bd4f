#include "Settings/Views/AgentSettingsRow.h"

#include "Agents/AgentInstructions.h"
#include "Settings/ConnectionState.h"
#include "Theme/Texts.h"

namespace kippo {

namespace {

QString homeFile(std::string_view path) { return QStringLiteral("~/%1").arg(oneLine(path)); }

QString noteOf(AgentKind kind) {
    switch (kind) {
    case AgentKind::claudeDesktop:
        return QStringLiteral("The desktop app's coding sessions");
    case AgentKind::custom:
        return QStringLiteral("Those that are named below");
    default:
        return QStringLiteral("Seen by its process; there is nothing to connect");
    }
}

QString titleOf(AgentKind kind) {
    switch (kind) {
    case AgentKind::claudeDesktop:
        return QStringLiteral("Claude desktop");
    case AgentKind::custom:
        return QStringLiteral("Programs you watch");
    default:
        return oneLine(displayTitle(kind));
    }
}

constexpr std::array agentRoles{
    AgentSettingsModel::Role{"kind", [](const AgentSettingsRow& row) { return QVariant::fromValue(row.kind); }},
    AgentSettingsModel::Role{"title", [](const AgentSettingsRow& row) { return QVariant{row.title}; }},
    AgentSettingsModel::Role{"note", [](const AgentSettingsRow& row) { return QVariant{row.note}; }},
    AgentSettingsModel::Role{"isListed", [](const AgentSettingsRow& row) { return QVariant{row.isListed}; }},
    AgentSettingsModel::Role{"hasLights", [](const AgentSettingsRow& row) { return QVariant{row.hasLights}; }},
    AgentSettingsModel::Role{"isConnected", [](const AgentSettingsRow& row) { return QVariant{row.isConnected}; }},
    AgentSettingsModel::Role{"isProven", [](const AgentSettingsRow& row) { return QVariant{row.isProven}; }},
    AgentSettingsModel::Role{"sentence", [](const AgentSettingsRow& row) { return QVariant{row.sentence}; }},
    AgentSettingsModel::Role{"advice", [](const AgentSettingsRow& row) { return QVariant{row.advice}; }},
    AgentSettingsModel::Role{"settingsFile", [](const AgentSettingsRow& row) { return QVariant{row.settingsFile}; }},
    AgentSettingsModel::Role{"instructionsFile",
                             [](const AgentSettingsRow& row) { return QVariant{row.instructionsFile}; }},
    AgentSettingsModel::Role{"asksForSummary",
                             [](const AgentSettingsRow& row) { return QVariant{row.asksForSummary}; }},
};

constexpr std::array nameRoles{
    NameListModel::Role{"storedName", [](const NameRow& row) { return QVariant{row.id}; }},
    NameListModel::Role{"shownName", [](const NameRow& row) { return QVariant{row.name}; }},
};

} // namespace

AgentSettingsRow plainAgentRow(const AgentStore& store, AgentKind kind) {
    AgentSettingsRow row;
    row.id = oneLine(rawValue(kind));
    row.kind = AgentLook::look(kind);
    row.title = titleOf(kind);
    row.note = noteOf(kind);
    row.isListed = !store.isHidden(kind);
    row.hasLights = store.drivesLights(kind);
    return row;
}

AgentSettingsRow hookAgentRow(const AgentStore& store, HookAgent agent, std::optional<Date> connectedAt, Date now) {
    AgentSettingsRow row = plainAgentRow(store, agentKind(agent));
    row.note.clear();
    row.isConnected = store.connected().contains(agent);
    const auto heard = store.lastEventByAgent().find(agent);
    const auto lastEvent = heard == store.lastEventByAgent().end() ? std::nullopt : std::optional<Date>{heard->second};
    const ConnectionState state = connectionState(agent, row.isConnected, lastEvent, connectedAt, now);
    row.isProven = state.value == ConnectionState::Case::proven;
    row.sentence = oneLine(state.sentence);
    row.advice = oneLine(state.advice);
    row.settingsFile = homeFile(settingsPath(agent));
    if (const auto path = AgentInstructions::path(agent)) {
        row.instructionsFile = homeFile(*path);
    }
    row.asksForSummary = store.summaryInstructions().contains(agent);
    return row;
}

AgentSettingsModel::AgentSettingsModel() : KeyedListModel(agentRoles) {}

NameListModel::NameListModel() : KeyedListModel(nameRoles) {}

void NameListModel::showNames(const std::vector<std::string>& names) {
    std::vector<NameRow> wanted;
    for (const std::string& name : names) {
        const QString id = QString::fromStdString(name);
        if (std::ranges::find(wanted, id, &NameRow::id) == wanted.end()) {
            wanted.push_back({id, oneLine(name)});
        }
    }
    const bool wasEmpty = isEmpty();
    show(std::move(wanted));
    if (wasEmpty != isEmpty()) {
        emit emptyChanged();
    }
}

} // namespace kippo
