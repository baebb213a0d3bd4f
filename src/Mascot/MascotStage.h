#pragma once

#include "Support/Observers.h"
#include "Support/Time.h"

namespace kippo {

/// Where the mascot is and what he does: a state machine with a clock, which the drawing obeys. Main queue only.
class MascotStage {
public:
    enum class State { idle, walk, catching, cheer, panic, sleep };

    /// The mascot of the open panel's floor.
    struct Floor {
        State state = State::idle;
        Date since = distantPast; ///< when the state began
        double x = 0.5;           ///< along the floor, 0 to 1
        bool facesLeft = false;

        bool operator==(const Floor&) const = default;
    };

    const Floor& floor() const { return floor_; }
    /// Puts him into a state and restarts its clock.
    void setState(State state, Date now);
    /// A clip was copied: he catches it when he has nothing better to do.
    void clip(Date now);
    /// An agent is done: he cheers, unless he sleeps.
    void agentDone(Date now);
    /// An agent needs the person: he panics, also out of his sleep.
    void agentNeedsYou(Date now);
    void sale(Date now);
    [[nodiscard]] Subscription observe(std::function<void()> callback) { return observers_.add(std::move(callback)); }

private:
    Floor floor_;
    Observers observers_;
};

} // namespace kippo
