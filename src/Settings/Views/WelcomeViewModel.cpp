#include "Settings/Views/WelcomeViewModel.h"

#include "Theme/Texts.h"

namespace kippo {

namespace {

std::set<QString> ids(const std::set<HookAgent>& agents) {
    std::set<QString> all;
    for (const HookAgent agent : agents) {
        all.insert(oneLine(rawValue(agentKind(agent))));
    }
    return all;
}

} // namespace

bool WelcomeViewModel::Found::filterAcceptsRow(int row, const QModelIndex& parent) const {
    const auto* all = qobject_cast<const AgentSettingsModel*>(sourceModel());
    return all && !parent.isValid() && accepts(all->rows()[static_cast<std::size_t>(row)].id);
}

WelcomeViewModel::WelcomeViewModel(AgentSettingsViewModel& agents, const std::set<HookAgent>& onMachine,
                                   QObject* parent)
    : QObject(parent), agents_(agents), found_(ids(onMachine)) {
    found_.setSourceModel(agents_.hookAgents());
    connect(&agents_, &AgentSettingsViewModel::changed, this, &WelcomeViewModel::changed);
}

int WelcomeViewModel::unconnected() const {
    const auto isOne = [this](const AgentSettingsRow& row) { return !row.isConnected && found_.accepts(row.id); };
    return static_cast<int>(std::ranges::count_if(agents_.hookAgents()->rows(), isOne));
}

void WelcomeViewModel::connectAll() {
    std::vector<AgentLook::Kind> wanted;
    for (const AgentSettingsRow& row : agents_.hookAgents()->rows()) {
        if (!row.isConnected && found_.accepts(row.id)) {
            wanted.push_back(row.kind);
        }
    }
    for (const AgentLook::Kind kind : wanted) {
        agents_.connectAgent(kind);
        if (!agents_.installError().isEmpty()) {
            return; // the next one would wipe out why
        }
    }
}

void WelcomeViewModel::finish() {
    if (onFinish) {
        onFinish();
    }
}

} // namespace kippo
