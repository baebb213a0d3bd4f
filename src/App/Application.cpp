#include "App/Application.h"

#include "Agents/AgentStore.h"
#include "Notch/LiveActivities.h"

namespace kippo {

namespace {

constexpr Seconds donePeek{2.5};
constexpr Seconds needsYouPeek{4.0};

// What the wings show depends on the hour, too.
constexpr Seconds minuteInterval{60};
constexpr Seconds minuteTolerance{10};

} // namespace

Application::Application(Panel& panel, Ports ports)
    : panel_(panel), ports_(ports),
      notch_(panel.model, ports.scheduler, ports.defaults, ports.screens, ports.pointer, ports.window) {
    panel_.notch.onOpen = [this] { notch_.expand(); };
    panel_.notch.onOpenSettings = [this] {
        notch_.collapse();
        if (showSettings) {
            showSettings(QStringLiteral("Agents"));
        }
    };
    notchSubscription_ = panel_.model.observe([this] { notchChanged(); });
    defaultsSubscription_ = ports_.defaults.observe([this] { readSettings(); });
    minute_ = ports_.scheduler.every(minuteInterval, minuteTolerance, [this] { updateLiveActivity(); });
    readSettings();
}

void Application::follow(AgentStore& agents) {
    agents.onAlert = [this](const AgentSession& session) { agentAlert(session); };
    agentsSubscription_ = agents.observe([this, &agents] { show(agents.sessions(), agents.statusLights()); });
    onAgentsPageVisible = [&agents](bool visible) { agents.setVisible(visible); };
    show(agents.sessions(), agents.statusLights());
}

void Application::showSessions(std::span<const AgentSession> sessions) { show(sessions, liveSummary(sessions)); }

void Application::show(std::span<const AgentSession> sessions, std::optional<LiveSummary> lights) {
    lights_ = std::move(lights);
    panel_.agents.show(sessions);
    updateLiveActivity();
}

void Application::agentAlert(const AgentSession& session) {
    if (ports_.defaults.get<bool>("agentAlerts")) {
        notch_.peek(session, session.status.isNeedsYou() ? needsYouPeek : donePeek);
    }
}

void Application::updateLiveActivity() {
    const LiveChoice choice = chooseLive(lights_, ports_.defaults, ports_.scheduler.now());
    notch_.setLive(choice.primary, choice.secondary);
}

void Application::readSettings() {
    const bool reduced = ports_.defaults.get<bool>("reducedMotion");
    panel_.stage.setReducedMotion(reduced);
    panel_.notch.setReducedMotion(reduced);
    updateLiveActivity();
}

void Application::notchChanged() {
    // The agents' page is the only one so far, whatever the tab.
    const bool visible = panel_.model.fields().mode == NotchModel::Mode::expanded;
    if (visible == panel_.agents.isVisible()) {
        return;
    }
    panel_.agents.setVisible(visible);
    if (onAgentsPageVisible) {
        onAgentsPageVisible(visible);
    }
}

} // namespace kippo
