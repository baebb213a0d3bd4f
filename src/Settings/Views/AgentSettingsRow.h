#pragma once

#include "Agents/AgentStore.h"
#include "Theme/AgentLook.h"
#include "Theme/KeyedListModel.h"

namespace kippo {

/// An agent as the settings show it: every text formatted, nothing left to decide.
struct AgentSettingsRow {
    QString id; ///< the kind's raw value
    AgentLook::Kind kind = AgentLook::Kind::Custom;
    QString title;
    QString note; ///< what there is to know about an agent without hooks
    bool isListed = true;
    bool hasLights = true;
    // The rest is of agents that report through hooks.
    bool isConnected = false;
    bool isProven = false;
    QString sentence;
    QString advice;
    QString settingsFile;     ///< as the user writes it
    QString instructionsFile; ///< empty for an agent that has none
    bool asksForSummary = false;
};

/// `connectedAt` is when the person connected the agent, where that is known.
AgentSettingsRow hookAgentRow(const AgentStore& store, HookAgent agent, std::optional<Date> connectedAt, Date now);
/// Of an agent that is followed without hooks.
AgentSettingsRow plainAgentRow(const AgentStore& store, AgentKind kind);

/// Agents in the settings, one a row.
class AgentSettingsModel : public KeyedListModel<AgentSettingsRow> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Comes with AgentSettingsViewModel")

public:
    AgentSettingsModel();
};

/// A name in a list of names.
struct NameRow {
    QString id; ///< the name as it is stored
    QString name;
};

/// Names, such as those of watched programs, one a row.
class NameListModel : public KeyedListModel<NameRow> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Comes with AgentSettingsViewModel")
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY emptyChanged)

public:
    NameListModel();

    bool isEmpty() const { return rows().empty(); }
    void showNames(const std::vector<std::string>& names);

signals:
    void emptyChanged();
};

} // namespace kippo
