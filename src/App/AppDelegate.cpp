#include "App/AppDelegate.h"

#include "Agents/AgentStore.h"
#include "Notch/LiveActivities.h"
#include "Support/Desktop.h"
#include "Support/Sounds.h"
#include "Support/UrlOpener.h"

namespace kippo {

namespace {

constexpr Seconds donePeek{2.5};
constexpr Seconds needsYouPeek{4.0};

// What the wings show depends on the hour, too.
constexpr Seconds minuteInterval{60};
constexpr Seconds minuteTolerance{10};

} // namespace

AppDelegate::AppDelegate(Stores& stores, Panel& panel, Ports ports) : stores_(stores), panel_(panel), ports_(ports) {
    panel_.notch.onOpen = [this] { notch_->expand(); };
    panel_.notch.onOpenSettings = [this] { showSettings("Agents"); };
    connectDesktop();
}

void AppDelegate::follow(AgentStore& agents) {
    agents_ = &agents;
    connectPages();
}

void AppDelegate::startApp() {
    if (started_) {
        return;
    }
    started_ = true;
    notch_.emplace(panel_.model, ports_.scheduler, ports_.defaults, ports_.screens, ports_.pointer, ports_.window);
    notchSubscription_ = panel_.model.observe([this] { notchChanged(); });
    if (agents_) {
        agents_->onAlert = [this](const AgentSession& session) { agentAlert(session); };
        agentsSubscription_ = agents_->observe([this] { showAll(); });
        showAll();
        agents_->start();
    }
    stores_.focus.onChange = [this] { updateLiveActivity(); };
    stores_.focus.start();
    readSettings();
    minute_ = ports_.scheduler.every(minuteInterval, minuteTolerance, [this] { updateLiveActivity(); });
    defaultsSubscription_ = ports_.defaults.observe([this] { readSettings(); });
}

// The pages

void AppDelegate::connectPages() {
    AgentStore& agents = *agents_;
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
}

void AppDelegate::connectDesktop() {
    const auto openAddress = [this](const std::string& address) {
        const auto opened = ports_.urls.open(address);
        panel_.agents.showProblem(opened ? std::string{} : opened.error().sentence);
    };
    panel_.agents.onOpenAddress = openAddress;
    panel_.agents.onOpenFolder = [this](const std::string& path) { ports_.desktop.openFolder(path); };
    panel_.agents.onCopy = [this](const std::string& text) { ports_.desktop.copy(text); };
    panel_.leftBehind.onOpenAddress = openAddress;
}

void AppDelegate::showAll() {
    show(agents_->sessions(), agents_->statusLights(), agents_->clearable().size());
    panel_.leftBehind.show(agents_->detached());
    panel_.leftBehind.showLeftovers({agents_->leftovers(), agents_->isScanningLeftovers(),
                                     agents_->hasScannedLeftovers(), agents_->lastTrashed(), agents_->trashError()});
    panel_.usage.show(agents_->usageReport(), agents_->hasUsage(), ports_.scheduler.now());
}

void AppDelegate::showSessions(std::span<const AgentSession> sessions, std::size_t clearable) {
    show(sessions, liveSummary(sessions), clearable);
}

void AppDelegate::show(std::span<const AgentSession> sessions, std::optional<LiveSummary> lights,
                       std::size_t clearable) {
    lights_ = std::move(lights);
    panel_.agents.show(sessions, clearable);
    updateLiveActivity();
}

void AppDelegate::notchChanged() {
    const NotchModel::Fields& fields = panel_.model.fields();
    // The agents' page is the only one so far, whatever the tab.
    const bool visible = fields.mode == NotchModel::Mode::expanded;
    stores_.mascotStage.setFloorShown(visible);
    stores_.mascotStage.setWingShown(fields.live && std::holds_alternative<SleepingActivity>(*fields.live));
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

// What happens

void AppDelegate::agentAlert(const AgentSession& session) {
    const bool needsYou = session.status.isNeedsYou();
    if (needsYou) {
        stores_.mascotStage.agentNeedsYou();
    } else {
        stores_.mascotStage.agentDone();
    }
    if (!ports_.defaults.get<bool>("agentAlerts")) {
        return;
    }
    if (ports_.defaults.get<bool>("agentSound")) {
        ports_.sounds.play(needsYou ? Sound::funk : Sound::glass);
    }
    notch_->peek(session, needsYou ? needsYouPeek : donePeek);
}

void AppDelegate::updateLiveActivity() {
    const LiveChoice choice =
        chooseLive(lights_, focusActivity(stores_.focus), ports_.defaults, ports_.scheduler.now());
    notch_->setLive(choice.primary, choice.secondary);
}

void AppDelegate::readSettings() {
    const bool reduced = ports_.defaults.get<bool>("reducedMotion");
    panel_.stage.setReducedMotion(reduced);
    panel_.notch.setReducedMotion(reduced);
    stores_.mascotStage.setRoaming(ports_.defaults.get<bool>("mascotEnabled") &&
                                   ports_.defaults.get<bool>("mascotRoams"));
    syncHotKeys();
    updateLiveActivity();
}

// What the person asks for

void AppDelegate::syncHotKeys() {
    if (!ports_.defaults.get<bool>("hotKeysEnabled")) {
        hotKeys_.clear();
        return;
    }
    if (!hotKeys_.empty()) {
        return;
    }
    const auto grab = [this](char letter, std::function<void()> pressed) {
        if (auto key = ports_.hotKeys.grab({letter}, std::move(pressed))) {
            hotKeys_.push_back(std::move(*key));
        }
    };
    grab('A', [this] { notch_->toggle(NotchTab::agents); });
    grab('P', [this] { toggleFocus(); });
}

void AppDelegate::openTab(NotchTab tab) { notch_->expand(tab, true); }

void AppDelegate::toggleFocus() { stores_.focus.toggle(); }

void AppDelegate::startStretch() {
    stores_.stretch.start();
    openTab(NotchTab::focus);
}

void AppDelegate::showSettings(const std::string& page) {
    notch_->collapse();
    if (onShowSettings) {
        onShowSettings(page);
    }
}

} // namespace kippo
