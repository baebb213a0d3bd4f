#include "App/DemoScenes.h"

#include "App/DemoSessions.h"

#include <algorithm>
#include <array>

namespace kippo::DemoScenes {

namespace {

constexpr Seconds atLeisure{86400};

void open(Application& application, const std::vector<AgentSession>& sessions) {
    application.showSessions(sessions);
    // As from the keyboard, so that it stays open wherever the pointer is.
    application.notch().expand(NotchTab::agents, true);
}

struct Scene {
    std::string_view name;
    void (*arrange)(Application& application, Date now);
};

constexpr std::array scenes{
    Scene{"closed", [](Application& to, Date) { to.showSessions({}); }},
    Scene{"live",
          [](Application& to, Date now) {
              to.showSessions(std::vector{DemoSessions::working(now), DemoSessions::running(now)});
          }},
    Scene{"live-one", [](Application& to, Date now) { to.showSessions(std::vector{DemoSessions::working(now)}); }},
    Scene{"live-needs-you", [](Application& to, Date now) { to.showSessions(DemoSessions::afternoon(now)); }},
    Scene{"peek-done", [](Application& to, Date now) { to.notch().peek(DemoSessions::finished(now), atLeisure); }},
    Scene{"peek-short",
          [](Application& to, Date now) {
              AgentSession session = DemoSessions::working(now);
              session.status = AgentStatus::done();
              to.notch().peek(session, atLeisure);
          }},
    Scene{"peek-long", [](Application& to, Date now) { to.notch().peek(DemoSessions::verbose(now), atLeisure); }},
    Scene{"peek-needs-you", [](Application& to, Date now) { to.notch().peek(DemoSessions::waiting(now), atLeisure); }},
    Scene{"open", [](Application& to, Date now) { open(to, DemoSessions::afternoon(now)); }},
    Scene{"many", [](Application& to, Date now) { open(to, DemoSessions::crowd(now)); }},
    Scene{"empty", [](Application& to, Date) { open(to, {}); }},
};

} // namespace

std::vector<std::string_view> names() {
    std::vector<std::string_view> all;
    std::ranges::transform(scenes, std::back_inserter(all), &Scene::name);
    return all;
}

bool arrange(std::string_view name, Application& application, Date now) {
    const auto* const found = std::ranges::find(scenes, name, &Scene::name);
    if (found == scenes.end()) {
        return false;
    }
    found->arrange(application, now);
    return true;
}

} // namespace kippo::DemoScenes
