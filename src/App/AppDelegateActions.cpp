#include "Agents/AgentStore.h"
#include "App/AppDelegate.h"
#include "Focus/FocusCommands.h"
#include "Support/Desktop.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace kippo {

namespace {

constexpr int demoFocusMinutes = 25;

/// The pages by the names that people type.
constexpr std::array<std::pair<std::string_view, NotchTab>, 7> tabNames{{{"home", NotchTab::home},
                                                                         {"agents", NotchTab::agents},
                                                                         {"focus", NotchTab::focus},
                                                                         {"clipboard", NotchTab::clipboard},
                                                                         {"notes", NotchTab::notes},
                                                                         {"music", NotchTab::music},
                                                                         {"revenue", NotchTab::revenue}}};

} // namespace

// What the person does on the pages

/// While a demo plays, the sessions are samples: their process ids are anybody's.
void AppDelegate::connectPages() {
    panel_.agents.onDismiss = [this](const AgentSession& session) {
        if (demo_.isRunning()) {
            demo_.dismiss(session.id);
        } else if (agents_) {
            agents_->dismiss(session);
        }
    };
    panel_.agents.onClear = [this] {
        if (demo_.isRunning()) {
            demo_.clearFinished();
        } else if (agents_) {
            agents_->clearFinishedAndOrphaned();
        }
    };
    panel_.agents.onStop = [this](Pid pid) {
        if (demo_.isRunning()) {
            demo_.end(pid);
        } else if (agents_) {
            agents_->stop(pid);
        }
    };
}

void AppDelegate::follow(AgentStore& agents) {
    agents_ = &agents;
    LeftBehindViewModel& leftBehind = panel_.leftBehind;
    leftBehind.onStop = [&agents](Pid pid) { agents.stop(pid); };
    leftBehind.onStopAll = [&agents] { agents.stopAllDetached(); };
    leftBehind.onScan = [&agents] { agents.scanLeftovers(); };
    leftBehind.onTrash = [&agents](const Leftover& leftover) { agents.trash(leftover); };
    leftBehind.onUndoTrash = [&agents] { agents.undoTrash(); };
    leftBehind.onHide = [&agents](const std::string& name) { agents.hideProcess(name); };
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

void AppDelegate::connectNotch() {
    panel_.notch.onOpen = [this] { notch_->expand(); };
    panel_.notch.onOpenSettings = [this] { showSettings("Agents"); };
    panel_.notch.onShow = [this](NotchTab tab) { notch_->show(tab); };
    panel_.notch.onTurn = [this](int steps) { notch_->turn(steps); };
    panel_.notch.onPin = [this](bool pinned) { notch_->setPinned(pinned); };
    panel_.notch.onClose = [this] { notch_->collapse(); };
    panel_.stretch.onBegin = [this] { startStretch(); };
}

void AppDelegate::connectMascot() {
    panel_.stage.onBubble = [this] {
        const QRectF& bubble = panel_.stage.bubble();
        const Rect place{bubble.x(), bubble.y(), bubble.width(), bubble.height()};
        notch_->setMascotPlace(bubble.isEmpty() ? std::nullopt : std::optional{place});
    };
    panel_.mascot.onAction = [this](const MascotMessage::Action& action) { perform(action); };
    panel_.mascot.onAttended = [this](bool attended) { notch_->setMascotAttended(attended); };
}

void AppDelegate::perform(const MascotMessage::Action& action) {
    using Case = MascotMessage::Action::Case;
    notch_->hideMascot();
    switch (action.value) {
    case Case::startFocus:
        ports_.defaults.set("focusMinutes", std::int64_t{action.minutes});
        stores_.focus.begin(FocusStore::Phase::focus, action.minutes);
        break;
    case Case::startBreak:
        stores_.focus.startBreak();
        break;
    case Case::stretch:
        startStretch();
        break;
    case Case::muteToday:
        Coach::muteForToday(ports_.scheduler, ports_.defaults);
        break;
    case Case::goodNight:
        Coach::goodNight(ports_.scheduler, ports_.defaults);
        break;
    case Case::dismiss:
        break;
    }
}

// What the person asks for

void AppDelegate::openTab(NotchTab tab) { notch_->expand(tab, true); }

void AppDelegate::toggleFocus() { stores_.focus.toggle(); }

void AppDelegate::startStretch() {
    // Stretches that nobody sees are no use: whoever starts them wants their page.
    if (!ports_.defaults.get<bool>("showFocusTab")) {
        ports_.defaults.set("showFocusTab", true);
    }
    lettingGo_.cancel();
    if (!FocusStore::isBreak(stores_.focus.phase())) {
        stores_.focus.startBreak();
    }
    stores_.stretch.start();
    notch_->expand(NotchTab::focus);
    holdOpen();
}

void AppDelegate::showSettings(const std::string& page) {
    if (panel_.model.fields().mode == NotchModel::Mode::expanded) {
        notch_->collapse();
    }
    if (onShowSettings) {
        onShowSettings(page);
    }
}

void AppDelegate::showWelcome() {
    isWelcoming_ = true;
    notch_->setHidden(true);
    if (onShowWelcome) {
        onShowWelcome();
    }
}

void AppDelegate::welcomeEnded() {
    isWelcoming_ = false;
    ports_.defaults.set("onboarded", true);
    notch_->setHidden(false);
}

std::string AppDelegate::reportText() const {
    return ProblemReport::text(ports_.about, agents_, ports_.scheduler.now());
}

std::expected<void, UrlOpener::Error> AppDelegate::writeReport() {
    return ports_.urls.open(ProblemReport::letter(ports_.about.supportAddress, reportText()));
}

void AppDelegate::reportProblem() {
    if (!writeReport()) {
        showSettings("About");
    }
}

void AppDelegate::quit() {
    if (onQuit) {
        onQuit();
    }
}

void AppDelegate::answer(SingleInstance& instance) {
    instance.onOpenSettings = [this](const std::string& page) { showSettings(page); };
    instance.onOpenPage = [this](const std::string& page) -> std::expected<void, std::string> {
        const auto* const known = std::ranges::find(tabNames, page, &decltype(tabNames)::value_type::first);
        if (known == tabNames.end() || !hasPage(known->second)) {
            return std::unexpected{fmt::format("There is no page \"{}\".", page)};
        }
        openTab(known->second);
        return {};
    };
    instance.onFocus = [this](const std::string& command, int minutes) {
        return FocusCommands::run(stores_.focus, ports_.scheduler.now(), command, minutes);
    };
}

// The demo

void AppDelegate::playDemo(bool endlessly) {
    if (!demo_.isRunning()) {
        stores_.focus.startDemo(demoFocusMinutes);
        demo_.start(endlessly);
        updateTray();
    }
}

void AppDelegate::stopDemo() {
    if (demo_.isRunning()) {
        demo_.stop();
    }
}

void AppDelegate::showDemo(const std::vector<AgentSession>& sessions) {
    if (!demo_.isRunning()) {
        stores_.focus.endDemo();
        updateTray();
    }
    if (!agents_) {
        const auto isDone = [](const AgentSession& session) { return session.status.isDone(); };
        showSessions(sessions, static_cast<std::size_t>(std::ranges::count_if(sessions, isDone)));
    } else if (demo_.isRunning()) {
        std::map<std::string, AgentSession> samples;
        for (const AgentSession& session : sessions) {
            samples.emplace(session.id, session);
        }
        agents_->injectDemo(std::move(samples));
    } else {
        agents_->clearDemo();
    }
}

} // namespace kippo
