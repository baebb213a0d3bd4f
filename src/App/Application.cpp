#include "App/Application.h"

#include "Agents/AgentStore.h"
#include "Notch/LiveActivities.h"
#include "Support/Desktop.h"
#include "Support/UrlOpener.h"

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
    connectDesktop();
    readSettings();
}

void Application::follow(AgentStore& agents) {
    agents.onAlert = [this](const AgentSession& session) { agentAlert(session); };
    agentsSubscription_ = agents.observe([this, &agents] { showAll(agents); });
    onAgentsPageVisible = [&agents](bool visible) { agents.setVisible(visible); };

    panel_.agents.onDismiss = [&agents](const AgentSession& session) { agents.dismiss(session); };
    panel_.agents.onClear = [&agents] { agents.clearFinishedAndOrphaned(); };
    panel_.agents.onStop = [&agents](Pid pid) { agents.stop(pid); };
    panel_.leftBehind.onStop = [&agents](Pid pid) { agents.stop(pid); };
    panel_.leftBehind.onStopAll = [&agents] { agents.stopAllDetached(); };
    panel_.leftBehind.onScan = [&agents] { agents.scanLeftovers(); };
    panel_.leftBehind.onTrash = [&agents](const Leftover& leftover) { agents.trash(leftover); };
    panel_.leftBehind.onUndoTrash = [&agents] { agents.undoTrash(); };
    panel_.leftBehind.onHide = [&agents](const std::string& name) { agents.hideProcess(name); };
    showAll(agents);
}

void Application::showAll(const AgentStore& agents) {
    show(agents.sessions(), agents.statusLights(), agents.clearable().size());
    panel_.leftBehind.show(agents.detached());
    panel_.leftBehind.showLeftovers({agents.leftovers(), agents.isScanningLeftovers(), agents.hasScannedLeftovers(),
                                     agents.lastTrashed(), agents.trashError()});
    panel_.usage.show(agents.usageReport(), agents.hasUsage(), ports_.scheduler.now());
}

void Application::connectDesktop() {
    const auto openAddress = [this](const std::string& address) {
        const auto opened = ports_.urls.open(address);
        panel_.agents.showProblem(opened ? std::string{} : opened.error().sentence);
    };
    panel_.agents.onOpenAddress = openAddress;
    panel_.agents.onOpenFolder = [this](const std::string& path) { ports_.desktop.openFolder(path); };
    panel_.agents.onCopy = [this](const std::string& text) { ports_.desktop.copy(text); };
    panel_.leftBehind.onOpenAddress = openAddress;
}

void Application::showSessions(std::span<const AgentSession> sessions, std::size_t clearable) {
    show(sessions, liveSummary(sessions), clearable);
}

void Application::show(std::span<const AgentSession> sessions, std::optional<LiveSummary> lights,
                       std::size_t clearable) {
    lights_ = std::move(lights);
    panel_.agents.show(sessions, clearable);
    updateLiveActivity();
}

void Application::agentAlert(const AgentSession& session) {
    if (ports_.defaults.get<bool>("agentAlerts")) {
        notch_.peek(session, session.status.isNeedsYou() ? needsYouPeek : donePeek);
    }
}

void Application::updateLiveActivity() {
    const LiveChoice choice = chooseLive(lights_, std::nullopt, ports_.defaults, ports_.scheduler.now());
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
    if (!visible) {
        panel_.leftBehind.rest();
    }
    if (onAgentsPageVisible) {
        onAgentsPageVisible(visible);
    }
}

} // namespace kippo
