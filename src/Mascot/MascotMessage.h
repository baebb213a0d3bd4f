#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kippo {

/// Something that the mascot says, with one or two answers.
struct MascotMessage {
    enum class Mood { curious, excited, sleepy };

    struct Action {
        enum class Case { startFocus, startBreak, stretch, dismiss, muteToday, goodNight };
        Case value = Case::dismiss;
        int minutes = 0; ///< of `startFocus`

        bool operator==(const Action&) const = default;
    };

    struct Choice {
        std::string title;
        Action action;

        bool operator==(const Choice&) const = default;
    };

    std::uint64_t id = 0; ///< new for each message of a run
    std::string text;
    Mood mood = Mood::curious;
    std::optional<Choice> primary;
    std::optional<Choice> secondary;
    bool wakeUp = false; ///< the sleeping mascot wakes to deliver it

    bool operator==(const MascotMessage&) const = default;
};

} // namespace kippo
