#include "Settings/Views/AgentSettingsViewModel.h"

#include "Settings/SetupGuide.h"
#include "Settings/WatchedName.h"
#include "Theme/Texts.h"

#include <QClipboard>
#include <QGuiApplication>

namespace kippo {

namespace {

// "Heard from 2 min ago" moves on, and an agent whose sessions are hidden is heard without the list changing.
constexpr Seconds clockInterval{5};
constexpr Seconds clockTolerance{1};

AgentKind kindOf(AgentLook::Kind kind) { return static_cast<AgentKind>(kind); }

std::optional<HookAgent> hookAgentOf(AgentLook::Kind kind) { return hookAgentFromRaw(rawValue(kindOf(kind))); }

} // namespace

AgentSettingsViewModel::AgentSettingsViewModel(AgentStore& store, Scheduler& scheduler, QObject* parent)
    : QObject(parent), store_(store), scheduler_(scheduler) {
    subscription_ = store_.observe([this] { read(); });
    clock_ = scheduler_.every(clockInterval, clockTolerance, [this] { read(); });
    refresh();
}

QString AgentSettingsViewModel::installError() const { return oneLine(store_.installError().value_or("")); }

void AgentSettingsViewModel::refresh() {
    store_.refreshConnections();
    read();
}

void AgentSettingsViewModel::read() {
    std::vector<AgentSettingsRow> hooked;
    for (const HookAgent agent : allHookAgents) {
        const auto since = connectedAt_.find(agent);
        hooked.push_back(hookAgentRow(store_, agent,
                                      since == connectedAt_.end() ? std::nullopt : std::optional{since->second},
                                      scheduler_.now()));
    }
    hookAgents_.show(std::move(hooked));

    std::vector<AgentSettingsRow> others;
    for (const AgentKind kind : allAgentKinds) {
        if (!hookAgentFromRaw(rawValue(kind))) {
            others.push_back(plainAgentRow(store_, kind));
        }
    }
    otherAgents_.show(std::move(others));

    watched_.showNames(store_.watchedNames());
    suggestions_.showNames(store_.suggestions());
    hiddenProcesses_.showNames(store_.hiddenProcesses());
    emit changed();
}

void AgentSettingsViewModel::connectAgent(AgentLook::Kind kind) {
    if (const auto agent = hookAgentOf(kind)) {
        const Date now = scheduler_.now();
        store_.connect(*agent);
        if (store_.connected().contains(*agent)) {
            connectedAt_[*agent] = now;
        }
        read();
    }
}

void AgentSettingsViewModel::disconnectAgent(AgentLook::Kind kind) {
    if (const auto agent = hookAgentOf(kind)) {
        store_.disconnect(*agent);
        read();
    }
}

PlannedChange* AgentSettingsViewModel::plannedChange(AgentLook::Kind kind, bool connects) const {
    const auto agent = hookAgentOf(kind);
    if (!agent) {
        return nullptr;
    }
    auto* change = new PlannedChange{store_.plannedConnection(*agent, connects),
                                     QStringLiteral("~/%1").arg(oneLine(settingsPath(*agent)))};
    QQmlEngine::setObjectOwnership(change, QQmlEngine::JavaScriptOwnership);
    return change;
}

void AgentSettingsViewModel::clearInstallError() {
    store_.clearInstallError();
    read();
}

void AgentSettingsViewModel::askForSummary(AgentLook::Kind kind, bool on) {
    if (const auto agent = hookAgentOf(kind)) {
        store_.setSummaryInstructions(*agent, on);
        read();
    }
}

void AgentSettingsViewModel::setListed(AgentLook::Kind kind, bool on) {
    store_.setVisible(kindOf(kind), on);
    read();
}

void AgentSettingsViewModel::setLights(AgentLook::Kind kind, bool on) {
    store_.setLights(kindOf(kind), on);
    read();
}

void AgentSettingsViewModel::copyPrompt(AgentLook::Kind kind) const {
    if (const auto agent = hookAgentOf(kind)) {
        QGuiApplication::clipboard()->setText(QString::fromStdString(store_.setupPrompt(*agent)));
    }
}

QVariantList AgentSettingsViewModel::setupGuide(AgentLook::Kind kind) const {
    QVariantList steps;
    if (const auto agent = hookAgentOf(kind)) {
        for (const SetupStep& step : kippo::setupGuide(*agent)) {
            steps.append(
                QVariant::fromValue(GuideStep{QString::fromStdString(step.title), QString::fromStdString(step.text)}));
        }
    }
    return steps;
}

QString AgentSettingsViewModel::watch(const QString& typed) {
    const auto name = watchedName(typed.toStdString(), store_.watchedNames());
    if (!name) {
        return oneLine(name.error());
    }
    store_.watch(*name);
    read();
    return {};
}

void AgentSettingsViewModel::unwatch(const QString& storedName) {
    store_.unwatch(storedName.toStdString());
    read();
}

void AgentSettingsViewModel::dismissSuggestion(const QString& storedName) {
    store_.dismissSuggestion(storedName.toStdString());
    read();
}

void AgentSettingsViewModel::unhideProcess(const QString& storedName) {
    store_.unhideProcess(storedName.toStdString());
    read();
}

} // namespace kippo
