#include "App/AppDelegate.h"

#include "Agents/AgentStore.h"
#include "App/MenuBarContent.h"
#include "Mascot/MascotLines.h"
#include "Notch/LiveActivities.h"
#include "Support/Sounds.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace kippo {

namespace {

constexpr Seconds donePeek{2.5};
constexpr Seconds needsYouPeek{4.0};

// What the wings show depends on the hour, too.
constexpr Seconds minuteInterval{60};
constexpr Seconds minuteTolerance{10};

// A page that opens by itself would close by itself before anybody has read it.
constexpr Seconds openedByItself{5};

struct HotKey {
    char letter;
    std::string_view title;
    void (*press)(AppDelegate& app);
};

constexpr std::array hotKeyTable{
    HotKey{'A', "Open Agents", [](AppDelegate& app) { app.notch().toggle(NotchTab::agents); }},
    HotKey{'P', "Start or Pause Focus", [](AppDelegate& app) { app.toggleFocus(); }},
};

HotKeyRecord::State stateOf(HotKeys::Error error) {
    return error == HotKeys::Error::takenByAnother ? HotKeyRecord::State::takenByAnother
                                                   : HotKeyRecord::State::unsupported;
}

} // namespace

AppDelegate::AppDelegate(Stores& stores, Panel& panel, Ports ports)
    : stores_(stores), panel_(panel), ports_(std::move(ports)), demo_(ports_.scheduler) {
    connectNotch();
    demo_.onSessions = [this](const std::vector<AgentSession>& sessions) { showDemo(sessions); };
    demo_.onAlert = [this](const AgentSession& session) { agentAlert(session); };
    connectPages();
    connectDesktop();
    connectMascot();
}

AppDelegate::~AppDelegate() {
    stopDemo();
    if (ports_.tray) {
        ports_.tray->hide();
        ports_.tray->onActivate = nullptr;
    }
    stores_.focus.onChange = nullptr;
    stores_.focus.onPhaseEnd = nullptr;
    stores_.stretch.onEnd = nullptr;
    if (agents_) {
        agents_->onAlert = nullptr;
    }
}

void AppDelegate::finishLaunching() {
    startApp();
    if (!ports_.defaults.get<bool>("onboarded") && onShowWelcome) {
        showWelcome();
    }
}

void AppDelegate::startApp() {
    if (started_) {
        return;
    }
    started_ = true;
    notch_.emplace(panel_.model, ports_.scheduler, ports_.defaults, ports_.screens, ports_.pointer, ports_.window);
    if (ports_.fullScreen) {
        notch_->follow(*ports_.fullScreen);
    }
    notchSubscription_ = panel_.model.observe([this] { notchChanged(); });
    if (ports_.tray) {
        ports_.tray->onActivate = [this] { notch_->expand(std::nullopt, true); };
    }
    followFocus();
    followAgents();
    stores_.focus.start();
    startCoach();
    readSettings();
    minute_ = ports_.scheduler.every(minuteInterval, minuteTolerance, [this] {
        updateLiveActivity();
        tellUntold();
    });
    defaultsSubscription_ = ports_.defaults.observe([this] { readSettings(); });
}

void AppDelegate::followAgents() {
    if (!agents_) {
        return;
    }
    agents_->onAlert = [this](const AgentSession& session) { agentAlert(session); };
    agentsSubscription_ = agents_->observe([this] { showAll(); });
    showAll();
    agents_->start();
}

void AppDelegate::followFocus() {
    stores_.focus.onChange = [this] { updateLiveActivity(); };
    stores_.focus.onPhaseEnd = [this](FocusStore::Phase ended, FocusStore::Phase next) {
        focusPhaseEnded(ended, next);
    };
    stores_.stretch.onEnd = [this] { letGo(); };
}

void AppDelegate::startCoach() {
    coach_.emplace(stores_.focus, Coach::Ports{.scheduler = ports_.scheduler,
                                               .defaults = ports_.defaults,
                                               .idleTime = ports_.idleTime,
                                               .workingCount = [this] { return agents_ ? agents_->workingCount() : 0; },
                                               .isUnsuitable = [this] { return isUnsuitable(); },
                                               .random = std::mt19937{ports_.random()}});
    coach_->show = [this](const MascotMessage& message) { say(message); };
    coach_->start();
}

/// No moment for the coach to speak.
bool AppDelegate::isUnsuitable() const {
    const Rect screen = notch_->screenFrame();
    return isWelcoming_ || demo_.isRunning() ||
           (ports_.fullScreen && ports_.fullScreen->fillsScreenAt({screen.x, screen.y}));
}

// The list

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
    if (ports_.tray) {
        const auto waiting = std::ranges::find_if(sessions, [](const auto& each) { return each.status.isNeedsYou(); });
        ports_.tray->setAttention(waiting == sessions.end() ? std::string{}
                                                            : fmt::format("{} needs you", waiting->title()));
    }
    updateLiveActivity();
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

void AppDelegate::focusPhaseEnded(FocusStore::Phase ended, FocusStore::Phase next) {
    using Phase = FocusStore::Phase;
    ports_.sounds.play(ended == Phase::focus ? Sound::hero : Sound::blow);
    if (!ports_.defaults.get<bool>("mascotEnabled")) {
        notch_->expand(NotchTab::focus);
        holdOpen();
        lettingGo_ = ports_.scheduler.after(openedByItself, [this] { letGo(); });
        return;
    }
    say(ended == Phase::focus ? MascotLines::focusDone(next == Phase::longBreak,
                                                       FocusStore::isBreak(stores_.focus.phase()), ports_.random)
                              : MascotLines::breakOver(stores_.focus.focusMinutes(), ports_.random));
}

void AppDelegate::say(const MascotMessage& message) { notch_->showMascot(message); }

void AppDelegate::tell(const std::string& sentence) {
    if (!ports_.defaults.get<bool>("mascotEnabled")) {
        showSettings();
        return;
    }
    untold_ = MascotLines::notice(sentence);
    tellUntold();
}

void AppDelegate::tellUntold() {
    const std::optional<MascotMessage>& said = panel_.model.fields().mascot;
    if (untold_ && !said && !isUnsuitable()) {
        notch_->showMascot(*untold_);
        if (said) {
            untold_.reset();
        }
    }
}

void AppDelegate::updateLiveActivity() {
    const LiveChoice choice =
        chooseLive(lights_, focusActivity(stores_.focus), ports_.defaults, ports_.scheduler.now());
    notch_->setLive(choice.primary, choice.secondary);
}

void AppDelegate::readSettings() {
    stores_.mascotStage.setRoaming(ports_.defaults.get<bool>("mascotEnabled") &&
                                   ports_.defaults.get<bool>("mascotRoams"));
    panel_.agents.setLights(ports_.defaults.get<bool>("statusLights"));
    syncHotKeys();
    updateTray();
    updateLiveActivity();
}

void AppDelegate::syncHotKeys() {
    const bool wanted = ports_.defaults.get<bool>("hotKeysEnabled");
    const auto& known = hotKeyState_.records();
    if (!known.empty() && wanted == (known.front().state != HotKeyRecord::State::off)) {
        return;
    }
    hotKeys_.clear();
    std::vector<HotKeyRecord> records;
    for (const HotKey& key : hotKeyTable) {
        HotKeyRecord record{.keys = {key.letter}, .title = std::string{key.title}};
        if (wanted) {
            auto grabbed = ports_.hotKeys.grab(record.keys, [this, &key] { key.press(*this); });
            record.state = grabbed ? HotKeyRecord::State::held : stateOf(grabbed.error());
            if (grabbed) {
                hotKeys_.push_back(std::move(*grabbed));
            }
        }
        records.push_back(std::move(record));
    }
    hotKeyState_.set(std::move(records));
}

void AppDelegate::updateTray() {
    if (!ports_.tray) {
        return;
    }
    if (ports_.defaults.get<bool>("showMenuBarIcon")) {
        ports_.tray->show(MenuBarContent::items(*this));
    } else {
        ports_.tray->hide();
    }
}

void AppDelegate::notchChanged() {
    const NotchModel::Fields& fields = panel_.model.fields();
    const bool isOpen = fields.mode == NotchModel::Mode::expanded;
    // Where motion is reduced he stands where he is.
    stores_.mascotStage.setFloorShown(isOpen && !panel_.appearance.reducedMotion());
    stores_.mascotStage.setWingShown(fields.live && std::holds_alternative<SleepingActivity>(*fields.live));
    if (fields.mascot && fields.mascot->wakeUp) {
        stores_.mascotStage.wakeUp();
    } else if (isSpeaking_ && !fields.mascot) {
        stores_.mascotStage.fellSilent();
    }
    isSpeaking_ = fields.mascot.has_value();
    panel_.mascot.show(fields.mascot);
    listenForAnswer();
    // Whoever closes the panel, or lets it go, holds it no longer.
    holdsOpen_ = holdsOpen_ && fields.isPinned;

    const bool visible = isOpen && panel_.model.page() == NotchTab::agents;
    if (visible == panel_.agents.isVisible()) {
        return;
    }
    panel_.agents.setVisible(visible);
    if (!visible) {
        panel_.leftBehind.rest();
    }
    if (agents_) {
        agents_->setVisible(visible);
    }
}

/// Holds the key that leads into the mascot's message only while there is one: other programs may want it.
void AppDelegate::listenForAnswer() {
    const bool wanted = isSpeaking_ && ports_.defaults.get<bool>("hotKeysEnabled");
    if (!wanted) {
        answerKey_.reset();
    } else if (!answerKey_) {
        auto key = ports_.hotKeys.grab({'K'}, [this] { notch_->focusMascot(); });
        answerKey_ = key ? std::optional{std::move(*key)} : std::nullopt;
    }
}

/// Pins the open panel, unless the person has.
void AppDelegate::holdOpen() {
    if (!panel_.model.fields().isPinned) {
        notch_->setPinned(true);
        holdsOpen_ = true;
    }
}

void AppDelegate::letGo() {
    lettingGo_.cancel();
    if (std::exchange(holdsOpen_, false)) {
        notch_->setPinned(false);
    }
}

} // namespace kippo
