#pragma once

#include "Agents/AgentModels.h"
#include "Support/Scheduler.h"

#include <functional>
#include <vector>

namespace kippo {

/// A short play for people to look at: sample sessions come, work, need the person, finish and leave.
/// It tells the same things at the same times that the agent store would.
class DemoDirector {
public:
    explicit DemoDirector(Scheduler& scheduler) : scheduler_(scheduler) {}

    /// The list of sessions changed.
    std::function<void(const std::vector<AgentSession>&)> onSessions;
    /// A session came to need the person, or finished.
    std::function<void(const AgentSession&)> onAlert;

    /// Plays it once, or over and over.
    void start(bool endlessly = true);
    /// Ends the play with an empty stage.
    void stop();
    bool isRunning() const { return isRunning_; }

    /// What a person does to the list.
    void dismiss(const std::string& id) { leave(id); }
    void clearFinished();
    /// The session with this process ends.
    void end(Pid pid);

private:
    struct Step;
    static const std::vector<Step>& script();
    void play();
    AgentSession* find(const std::string& id);
    void put(AgentSession session);
    void act(const std::string& id, const std::string& tool, const std::string& detail);
    void become(const std::string& id, AgentStatus status, std::optional<std::string> summary = {});
    void leave(const std::string& id);
    void sort();

    Scheduler& scheduler_;
    std::vector<AgentSession> sessions_;
    std::size_t next_ = 0;
    bool isRunning_ = false;
    bool isEndless_ = true;
    Timer timer_;
};

} // namespace kippo
