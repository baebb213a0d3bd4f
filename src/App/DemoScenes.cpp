#include "App/DemoScenes.h"

#include "App/DemoSessions.h"
#include "Mascot/MascotLines.h"
#include "Support/Json.h"
#include "Support/LocalTime.h"

#include <algorithm>
#include <array>

namespace kippo::DemoScenes {

namespace {

constexpr Seconds atLeisure{86400};

void open(AppDelegate& application, const std::vector<AgentSession>& sessions) {
    const auto over = [](const AgentSession& session) { return session.status.isDone(); };
    application.panel().leftBehind.show(DemoSessions::leftRunning());
    application.showSessions(sessions, static_cast<std::size_t>(std::ranges::count_if(sessions, over)));
    // As from the keyboard, so that it stays open wherever the pointer is.
    application.notch().expand(NotchTab::agents, true);
}

using Section = AgentsViewModel::Section;

/// The open panel at a section other than its first.
void openAt(AppDelegate& application, Date now, Section section) {
    open(application, DemoSessions::afternoon(now));
    application.panel().usage.show(DemoSessions::week(), true, now);
    application.panel().agents.setSection(section);
}

/// Nothing was left running, so that the folders come into sight.
void openLeftovers(AppDelegate& application, Date now, LeftBehindViewModel::Leftovers leftovers) {
    openAt(application, now, Section::LeftBehind);
    application.panel().leftBehind.show({});
    application.panel().leftBehind.showLeftovers(std::move(leftovers));
}

/// As after a scan, and after the largest was moved away.
LeftBehindViewModel::Leftovers scanned() {
    LeftBehindViewModel::Leftovers known{.found = DemoSessions::leftovers(), .hasScanned = true};
    known.lastTrashed = known.found.front();
    known.found.erase(known.found.begin());
    return known;
}

void openExpanded(AppDelegate& application, Date now, const AgentSession& session) {
    std::vector<AgentSession> sessions = DemoSessions::afternoon(now);
    *std::ranges::find(sessions, AgentStatus::Case::working, [](const auto& each) { return each.status.value; }) =
        session;
    open(application, sessions);
    application.panel().agents.toggle(QString::fromStdString(session.id));
}

/// A phase of focus that has just begun, beside agents at work or alone.
void focusOn(AppDelegate& application, const std::vector<AgentSession>& sessions) {
    application.stores().focus.begin(FocusStore::Phase::focus, 25);
    application.showSessions(sessions);
}

/// The focus page, on the timer that `prepare` left.
void openFocus(AppDelegate& application, Date now) {
    application.showSessions(std::vector{DemoSessions::working(now)});
    application.notch().expand(NotchTab::focus, true);
}

/// The stretches, after `done` of them.
void openStretch(AppDelegate& application, Date now, int done) {
    openFocus(application, now);
    application.startStretch();
    for (int i = 0; i < done; ++i) {
        application.stores().stretch.next();
    }
}

struct Scene {
    std::string_view name;
    void (*arrange)(AppDelegate& application, Date now);
};

constexpr std::array scenes{
    Scene{"closed", [](AppDelegate& to, Date) { to.showSessions({}); }},
    Scene{"live",
          [](AppDelegate& to, Date now) {
              to.showSessions(std::vector{DemoSessions::working(now), DemoSessions::running(now)});
          }},
    Scene{"live-one", [](AppDelegate& to, Date now) { to.showSessions(std::vector{DemoSessions::working(now)}); }},
    Scene{"live-needs-you", [](AppDelegate& to, Date now) { to.showSessions(DemoSessions::afternoon(now)); }},
    Scene{"peek-done", [](AppDelegate& to, Date now) { to.notch().peek(DemoSessions::finished(now), atLeisure); }},
    Scene{"peek-short",
          [](AppDelegate& to, Date now) {
              AgentSession session = DemoSessions::working(now);
              session.status = AgentStatus::done();
              to.notch().peek(session, atLeisure);
          }},
    Scene{"peek-long", [](AppDelegate& to, Date now) { to.notch().peek(DemoSessions::verbose(now), atLeisure); }},
    Scene{"peek-needs-you", [](AppDelegate& to, Date now) { to.notch().peek(DemoSessions::waiting(now), atLeisure); }},
    Scene{"live-focus", [](AppDelegate& to, Date) { focusOn(to, {}); }},
    Scene{"live-agents-focus", [](AppDelegate& to, Date now) { focusOn(to, DemoSessions::afternoon(now)); }},
    Scene{"sleeping", [](AppDelegate& to, Date) { to.notch().setLive(SleepingActivity{}, {}); }},
    Scene{"mascot-question",
          [](AppDelegate& to, Date now) {
              to.showSessions(std::vector{DemoSessions::working(now)});
              MascotLines::Random random{2};
              to.notch().showMascot(MascotLines::workingNudge(25, true, 25, random));
          }},
    Scene{"mascot-late",
          [](AppDelegate& to, Date) {
              to.notch().setLive(SleepingActivity{}, {});
              MascotLines::Random random{1};
              to.notch().showMascot(MascotLines::lateNight(1, 40, random));
          }},
    Scene{"pinned",
          [](AppDelegate& to, Date now) {
              open(to, DemoSessions::afternoon(now));
              to.notch().setPinned(true);
          }},
    Scene{"open", [](AppDelegate& to, Date now) { open(to, DemoSessions::afternoon(now)); }},
    Scene{"many", [](AppDelegate& to, Date now) { open(to, DemoSessions::crowd(now)); }},
    Scene{"empty", [](AppDelegate& to, Date) { open(to, {}); }},
    Scene{"open-expanded", [](AppDelegate& to, Date now) { openExpanded(to, now, DemoSessions::working(now)); }},
    Scene{"open-expanded-long",
          [](AppDelegate& to, Date now) { openExpanded(to, now, DemoSessions::overflowing(now)); }},
    Scene{"usage", [](AppDelegate& to, Date now) { openAt(to, now, Section::Usage); }},
    Scene{"usage-counting",
          [](AppDelegate& to, Date now) {
              openAt(to, now, Section::Usage);
              to.panel().usage.show({}, false, now);
          }},
    Scene{"usage-none",
          [](AppDelegate& to, Date now) {
              openAt(to, now, Section::Usage);
              to.panel().usage.show({}, true, now);
          }},
    Scene{"left-running",
          [](AppDelegate& to, Date now) {
              openAt(to, now, Section::LeftBehind);
              to.panel().leftBehind.showLeftovers({.found = DemoSessions::leftovers(), .hasScanned = true});
          }},
    Scene{"leftovers", [](AppDelegate& to, Date now) { openLeftovers(to, now, scanned()); }},
    Scene{"leftovers-new", [](AppDelegate& to, Date now) { openLeftovers(to, now, {}); }},
    Scene{"leftovers-none", [](AppDelegate& to, Date now) { openLeftovers(to, now, {.hasScanned = true}); }},
    Scene{"leftovers-failed",
          [](AppDelegate& to, Date now) {
              openLeftovers(to, now,
                            {.found = DemoSessions::leftovers(),
                             .isScanning = true,
                             .hasScanned = true,
                             .trashError = "node_modules of storefront stays where it is: its disk is read-only."});
          }},
    Scene{"focus-idle", openFocus},
    Scene{"focus-running", openFocus},
    Scene{"focus-paused", openFocus},
    Scene{"focus-break", openFocus},
    Scene{"stretch", [](AppDelegate& to, Date now) { openStretch(to, now, 0); }},
    Scene{"stretch-tip", [](AppDelegate& to, Date now) { openStretch(to, now, 5); }},
};

/// The timer that a scene finds, as the application saves it.
struct SavedTimer {
    std::string_view scene;
    std::string_view phase;
    std::string_view left; ///< the member that says how much is left; empty while idle
    int seconds;           ///< which is as much
    int total;
    int rounds; ///< done today
};

constexpr std::array timers{
    SavedTimer{"focus-idle", "idle", "", 0, 1500, 2},
    SavedTimer{"focus-running", "focus", "endsAt", 1067, 1500, 2},
    SavedTimer{"focus-paused", "focus", "pausedRemaining", 1067, 1500, 2},
    SavedTimer{"focus-break", "shortBreak", "endsAt", 205, 300, 3},
    SavedTimer{"stretch", "shortBreak", "endsAt", 270, 300, 3},
    SavedTimer{"stretch-tip", "shortBreak", "endsAt", 120, 300, 3},
};

} // namespace

void prepare(std::string_view name, UserDefaults& defaults, Date now) {
    const auto* const timer = std::ranges::find(timers, name, &SavedTimer::scene);
    if (timer == timers.end()) {
        return;
    }
    std::string text;
    Json::Writer json{text};
    json.beginObject().key("phase").string(timer->phase);
    if (!timer->left.empty()) {
        const double since = timer->left == "endsAt" ? referenceSeconds(now) : 0;
        json.key(timer->left).number(since + timer->seconds);
    }
    json.key("total").number(std::int64_t{timer->total});
    json.key("round").number(std::int64_t{timer->rounds});
    json.key("completedToday").number(std::int64_t{timer->rounds});
    json.key("day").number(referenceSeconds(startOfLocalDay(now))).endObject();
    defaults.set("focusState", text);
}

std::vector<std::string_view> names() {
    std::vector<std::string_view> all;
    std::ranges::transform(scenes, std::back_inserter(all), &Scene::name);
    return all;
}

bool arrange(std::string_view name, AppDelegate& application, Date now) {
    const auto* const found = std::ranges::find(scenes, name, &Scene::name);
    if (found == scenes.end()) {
        return false;
    }
    found->arrange(application, now);
    return true;
}

} // namespace kippo::DemoScenes
