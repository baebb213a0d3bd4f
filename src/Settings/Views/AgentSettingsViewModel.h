#pragma once

#include "Settings/Views/AgentSettingsRow.h"
#include "Settings/Views/PlannedChange.h"
#include "Support/Scheduler.h"

namespace kippo {

/// One step of a setup guide, for QML.
struct GuideStep {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString text MEMBER text CONSTANT)

public:
    QString title;
    QString text;
};

/// The settings' page about agents: shows what the store knows and passes on what the person asks for. Agents are named
/// by their kind; a request for a kind without hooks, where it takes hooks, does nothing.
class AgentSettingsViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// The agents that report through hooks, then those that do not.
    Q_PROPERTY(kippo::AgentSettingsModel* hookAgents READ hookAgents CONSTANT)
    Q_PROPERTY(kippo::AgentSettingsModel* otherAgents READ otherAgents CONSTANT)
    Q_PROPERTY(kippo::NameListModel* watched READ watched CONSTANT)
    Q_PROPERTY(kippo::NameListModel* suggestions READ suggestions CONSTANT)
    Q_PROPERTY(kippo::NameListModel* hiddenProcesses READ hiddenProcesses CONSTANT)
    /// Why the last edit of an agent's file did not happen; empty when all is well.
    Q_PROPERTY(QString installError READ installError NOTIFY changed)

public:
    AgentSettingsViewModel(AgentStore& store, Scheduler& scheduler, QObject* parent = nullptr);

    AgentSettingsModel* hookAgents() { return &hookAgents_; }
    AgentSettingsModel* otherAgents() { return &otherAgents_; }
    NameListModel* watched() { return &watched_; }
    NameListModel* suggestions() { return &suggestions_; }
    NameListModel* hiddenProcesses() { return &hiddenProcesses_; }
    QString installError() const;

    /// Reads the agents' files again; somebody may have edited them.
    Q_INVOKABLE void refresh();

    Q_INVOKABLE void connectAgent(kippo::AgentLook::Kind kind);
    Q_INVOKABLE void disconnectAgent(kippo::AgentLook::Kind kind);
    /// What `connectAgent`, or else `disconnectAgent`, would do; the caller's own.
    Q_INVOKABLE kippo::PlannedChange* plannedChange(kippo::AgentLook::Kind kind, bool connects) const;
    Q_INVOKABLE void clearInstallError();
    Q_INVOKABLE void askForSummary(kippo::AgentLook::Kind kind, bool on);
    Q_INVOKABLE void setListed(kippo::AgentLook::Kind kind, bool on);
    Q_INVOKABLE void setLights(kippo::AgentLook::Kind kind, bool on);
    /// Puts the text for an AI on the clipboard.
    Q_INVOKABLE void copyPrompt(kippo::AgentLook::Kind kind) const;
    /// Each is a GuideStep.
    Q_INVOKABLE QVariantList setupGuide(kippo::AgentLook::Kind kind) const;

    /// Watches a program; otherwise gives the sentence that says why not.
    Q_INVOKABLE QString watch(const QString& typed);
    Q_INVOKABLE void unwatch(const QString& storedName);
    Q_INVOKABLE void dismissSuggestion(const QString& storedName);
    Q_INVOKABLE void unhideProcess(const QString& storedName);

signals:
    void changed();

private:
    void read();

    AgentStore& store_;
    Scheduler& scheduler_;
    AgentSettingsModel hookAgents_;
    AgentSettingsModel otherAgents_;
    NameListModel watched_;
    NameListModel suggestions_;
    NameListModel hiddenProcesses_;
    std::map<HookAgent, Date> connectedAt_; ///< of those that were connected here
    Timer clock_;
    Subscription subscription_;
};

} // namespace kippo
