#pragma once

#include "Agents/LiveSummary.h"
#include "Focus/FocusStore.h"
#include "Mascot/MascotMessage.h"
#include "Notch/Geometry.h"
#include "Support/Observers.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kippo {

class UserDefaults;

/// The pages of the open panel, in order.
enum class NotchTab { home, agents, focus, clipboard, notes, music, revenue };

/// The pages to show, in order: the optional ones by their settings, agents, clipboard and notes always.
std::vector<NotchTab> enabledTabs(const UserDefaults& defaults);

/// Whether `tab` has a page yet. A page joins with its feature; until then the agents' page is shown in its place.
bool hasPage(NotchTab tab);

/// What an announcement shows. New kinds of announcement join the variant with their feature.
using PeekContent = std::variant<AgentSession>;

/// What the wings of the closed notch show while something goes on.
using AgentsActivity = LiveSummary;
/// The focus timer, running or paused.
struct FocusActivity {
    FocusStore::Phase phase = FocusStore::Phase::focus;
    std::optional<Date> endsAt; ///< nothing while paused
    Seconds total{0};
    std::optional<Seconds> paused; ///< what was left when it was paused
    bool operator==(const FocusActivity&) const = default;

    /// What is left at `now`; never less than nothing.
    Seconds remaining(Date now) const;
};
struct SleepingActivity {
    bool operator==(const SleepingActivity&) const = default;
};
using LiveActivity = std::variant<AgentsActivity, FocusActivity, SleepingActivity>;

/// The notch's state, read by every view and changed by NotchController alone.
class NotchModel {
public:
    enum class Mode { collapsed = 0, live = 1, peek = 2, expanded = 3 };

    struct Fields {
        Mode mode = Mode::collapsed;
        NotchTab tab = NotchTab::agents;
        std::vector<NotchTab> pages; ///< to choose from, in order: enabled, and built
        Size notchSize{176, 32};     ///< of the camera notch, or of the cut-out drawn on screens without one
        bool hasNotch = false;
        std::optional<PeekContent> peek;
        std::optional<LiveActivity> live;
        std::optional<LiveActivity> secondaryLive;
        std::optional<MascotMessage> mascot; ///< what the mascot says beside the closed notch
        bool isHovering = false;             ///< the pointer rests over the closed notch
        bool isPinned = false;
        bool isEditingNote = false;
        bool isDragging = false;
        bool isEditingHome = false;
        int noteFocusRequest = 0;
        bool wantsNoteFocus = false;
        bool operator==(const Fields&) const = default;
    };

    const Fields& fields() const { return fields_; }
    /// The page to be seen when the panel is open: that of `tab`, or the agents' while that one is not built.
    NotchTab page() const { return hasPage(fields_.tab) ? fields_.tab : NotchTab::agents; }
    /// `live` while there is a live activity, else `collapsed`.
    Mode restingMode() const { return fields_.live ? Mode::live : Mode::collapsed; }

    /// Replaces the state; observers hear of it only when something changed.
    void set(Fields fields);
    [[nodiscard]] Subscription observe(std::function<void()> callback) { return observers_.add(std::move(callback)); }

private:
    Fields fields_;
    Observers observers_;
};

} // namespace kippo
