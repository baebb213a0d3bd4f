#pragma once

#include "Mascot/MascotPose.h"
#include "Support/Observers.h"
#include "Support/Scheduler.h"

#include <optional>
#include <random>

namespace kippo {

/// Where the mascot is and what he does: a state machine with a clock, which the drawing obeys. He has two places, the
/// floor of the open panel and the wing of the closed notch, where he sleeps at night. Main queue only.
class MascotStage {
public:
    using State = MascotState;

    /// What he does in one place.
    struct Actor {
        State state = State::idle;
        Date since = distantPast; ///< when the state began
        bool operator==(const Actor&) const = default;
    };

    /// The mascot of the open panel's floor.
    struct Floor : Actor {
        double x = 0.5;    ///< where the state began, along the floor, 0 to 1
        double goal = 0.5; ///< where a walk goes; `x` in every other state
        bool facesLeft = false;
        bool operator==(const Floor&) const = default;

        /// Where he is at `now`, on a floor of `length` times his height.
        double position(Date now, double length) const;
    };

    /// Steps a second, in his own heights.
    static constexpr double pace = 0.75;

    explicit MascotStage(Scheduler& scheduler, std::mt19937 random = std::mt19937{std::random_device{}()});

    const Floor& floor() const { return floor_; }
    /// The mascot in the wing; nothing while he is not there.
    const std::optional<Actor>& wing() const { return wing_; }
    double floorLength() const { return floorLength_; }

    /// Whether there is a mascot on the floor at all. Without one nothing is scheduled and nothing happens.
    void setRoaming(bool roams);
    bool isRoaming() const { return roams_; }
    /// Whether the floor is to be seen: only then does he walk about.
    void setFloorShown(bool shown);
    /// How long the floor is, in his own heights.
    void setFloorLength(double length);
    /// Whether he has the wing to sleep in.
    void setWingShown(bool shown);

    /// Puts the mascot of the floor into a state and restarts its clock.
    void setState(State state);
    /// A clip was copied: he catches it when he has nothing better to do.
    void clip();
    /// An agent is done: he cheers, unless he sleeps.
    void agentDone();
    /// An agent needs the person: he panics, also out of his sleep.
    void agentNeedsYou();
    /// Money came in: he cheers, also out of his sleep.
    void sale();
    /// The one in the wing wakes to say something, and sleeps again when it was said.
    void wakeUp();
    void fellSilent();

    [[nodiscard]] Subscription observe(std::function<void()> callback) { return observers_.add(std::move(callback)); }

private:
    void enter(State state);
    void scheduleNext();
    void chooseNext();
    void walkSomewhere();
    bool isNight() const;
    double between(double least, double most);

    Scheduler& scheduler_;
    std::mt19937 random_;
    Floor floor_;
    std::optional<Actor> wing_;
    double floorLength_ = 8;
    int walks_ = 0; ///< since anything happened
    bool roams_ = true;
    bool isFloorShown_ = false;
    Timer next_;
    Observers observers_;
};

} // namespace kippo
