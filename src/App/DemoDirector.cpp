#include "App/DemoDirector.h"

#include "App/DemoSessions.h"

#include <algorithm>
#include <tuple>

namespace kippo {

struct DemoDirector::Step {
    Seconds after; ///< the step before
    void (*perform)(DemoDirector& stage);
};

const std::vector<DemoDirector::Step>& DemoDirector::script() {
    using namespace std::chrono_literals;
    using Stage = DemoDirector;
    static const std::vector<Step> steps{
        {1s, [](Stage& s) { s.put(DemoSessions::working(s.scheduler_.now())); }},
        {3s, [](Stage& s) { s.act("work", "Grep", "SoldOutBadge"); }},
        {2s, [](Stage& s) { s.act("work", "Bash", "npm test -- ProductPage"); }},
        {1s, [](Stage& s) { s.put(DemoSessions::running(s.scheduler_.now())); }},
        {3s, [](Stage& s) { s.act("second", "Edit", "src/cache/store.rs"); }},
        {2s, [](Stage& s) { s.become("work", AgentStatus::needsYou("Waiting for you to approve a command")); }},
        {7s, [](Stage& s) { s.become("work", AgentStatus::working()); }},
        {2s, [](Stage& s) { s.act("work", "Bash", "npm run build"); }},
        {3s, [](Stage& s) { s.become("second", AgentStatus::done(), "The tile cache is on SQLite; 61 tests pass"); }},
        {5s, [](Stage& s) { s.act("work", "WebFetch", "https://docs.example.com/stock/badges"); }},
        {3s, [](Stage& s) { s.become("work", AgentStatus::done(), "Sold-out products say so, also in the cart"); }},
        {5s, [](Stage& s) { s.become("second", AgentStatus::idle()); }},
        {3s, [](Stage& s) { s.leave("work"); }},
        {2s, [](Stage& s) { s.leave("second"); }},
    };
    return steps;
}

void DemoDirector::start(bool endlessly) {
    if (isRunning_) {
        return;
    }
    isRunning_ = true;
    isEndless_ = endlessly;
    next_ = 0;
    play();
}

void DemoDirector::stop() {
    timer_.cancel();
    isRunning_ = false;
    sessions_.clear();
    onSessions(sessions_);
}

void DemoDirector::play() {
    const Step& step = script()[next_];
    timer_ = scheduler_.after(step.after, [this, &step] {
        next_ = (next_ + 1) % script().size();
        step.perform(*this);
        if (!isRunning_) {
            return;
        }
        if (next_ != 0 || isEndless_) {
            play();
        } else {
            stop();
        }
    });
}

AgentSession* DemoDirector::find(const std::string& id) {
    const auto found = std::ranges::find(sessions_, id, &AgentSession::id);
    return found == sessions_.end() ? nullptr : &*found;
}

void DemoDirector::put(AgentSession session) {
    session.workingSince = scheduler_.now();
    sessions_.push_back(std::move(session));
    sort();
    onSessions(sessions_);
}

void DemoDirector::act(const std::string& id, const std::string& tool, const std::string& detail) {
    if (AgentSession* session = find(id)) {
        session->activity = AgentActivity{AgentActivity::kindOf(tool), tool, detail, false, scheduler_.now()};
        session->lastEvent = scheduler_.now();
        onSessions(sessions_);
    }
}

void DemoDirector::become(const std::string& id, AgentStatus status, std::optional<std::string> summary) {
    AgentSession* session = find(id);
    if (!session) {
        return;
    }
    session->status = std::move(status);
    session->lastEvent = scheduler_.now();
    session->summary = std::move(summary);
    const AgentSession told = *session;
    sort();
    onSessions(sessions_);
    if (told.status.isNeedsYou() || told.status.isDone()) {
        onAlert(told);
    }
}

void DemoDirector::leave(const std::string& id) {
    std::erase_if(sessions_, [&id](const AgentSession& session) { return session.id == id; });
    onSessions(sessions_);
}

void DemoDirector::clearFinished() {
    std::erase_if(sessions_, [](const AgentSession& session) { return session.status.isDone(); });
    onSessions(sessions_);
}

void DemoDirector::end(Pid pid) {
    std::erase_if(sessions_, [pid](const AgentSession& session) { return session.rootPID == pid; });
    onSessions(sessions_);
}

void DemoDirector::sort() {
    std::ranges::sort(sessions_, {},
                      [](const auto& session) { return std::tuple{session.status.value, session.workingSince}; });
}

} // namespace kippo
