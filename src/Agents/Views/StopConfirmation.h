#pragma once

#include "Agents/AgentModels.h"
#include "Support/Scheduler.h"

#include <functional>
#include <optional>
#include <set>
#include <string_view>

namespace kippo {

/// The two clicks that stop a process: the first asks, the second, soon after and on the same process, does it. Goes by
/// process id, so a row that comes to lie under the pointer between the clicks is asked about anew. Owned by a view
/// model.
class StopConfirmation {
public:
    enum class State {
        ready,    ///< a click asks
        asking,   ///< a click stops
        stopping, ///< the process was asked to end and has not yet
    };
    /// Stands for all the processes of a list at once.
    static constexpr Pid everything = -1;
    /// For this long a second click counts.
    static constexpr Seconds patience{4};
    /// A process that still runs after this much time may be asked to end again.
    static constexpr Seconds stubborn{10};

    explicit StopConfirmation(Scheduler& scheduler) : scheduler_(scheduler) {}

    /// The second click.
    std::function<void(Pid)> onStop;
    /// Some state changed by itself or by a click.
    std::function<void()> onChange;

    void click(Pid pid);
    State state(Pid pid) const;
    /// What the action on `pid` is called at the moment.
    std::string_view label(Pid pid) const;
    /// A question that stands is withdrawn.
    void withdraw();
    /// What the view shows now: a question about any other process is withdrawn, and so is one about all of them when
    /// there is a new one among them.
    void follow(const std::set<Pid>& shown);

private:
    void changed() const;

    Scheduler& scheduler_;
    std::optional<Pid> asking_;
    std::set<Pid> stopping_;
    std::set<Pid> shown_;
    Timer withdrawal_;
    Timer retry_;
};

} // namespace kippo
