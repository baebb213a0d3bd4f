#pragma once

#include "Notch/FullScreenWatcher.h"
#include "Notch/NotchModel.h"
#include "Notch/PanelWindow.h"
#include "Notch/Screens.h"
#include "Support/Scheduler.h"
#include "Support/UserDefaults.h"

namespace kippo {

/// Owns what the notch does: it opens on hover and closes when the pointer is away, announces, shows what goes on, and
/// sits on the chosen screen. It alone changes the NotchModel; views call its operations. Main queue only.
class NotchController {
public:
    /// Lays the panel out and shows it.
    NotchController(NotchModel& model, Scheduler& scheduler, UserDefaults& defaults, Screens& screens, Pointer& pointer,
                    PanelWindow& window);
    NotchController(const NotchController&) = delete;
    NotchController& operator=(const NotchController&) = delete;

    /// Opens the panel on `tab`; without one, on the page that fits what goes on. A panel opened from the keyboard
    /// stays open when the pointer is elsewhere.
    void expand(std::optional<NotchTab> tab = std::nullopt, bool fromKeyboard = false);
    void collapse();
    /// Closes the panel when it shows `tab`, else opens it there, as from the keyboard.
    void toggle(NotchTab tab);
    /// Turns to another page of the open panel.
    void show(NotchTab tab);
    /// Turns `steps` pages on, or back; after the last comes the first.
    void turn(int steps);

    /// Announces `content` for `duration`, in place of any announcement there is. Dropped while the panel is open.
    void peek(PeekContent content, Seconds duration);
    /// What the wings of the closed notch show; `secondary` goes into the other wing.
    void setLive(std::optional<LiveActivity> primary, std::optional<LiveActivity> secondary);

    /// Has the mascot say `message` beside the closed notch: for 16 s, and then on for as long as the person attends to
    /// it. Once the person has left it, it goes after 6 s. Ignored while the panel is open or hidden; opening the panel
    /// ends it.
    void showMascot(const MascotMessage& message);
    /// It was answered, or is over.
    void hideMascot();
    /// The pointer is over the message or the keyboard in it, as the message's view sees it.
    void setMascotAttended(bool attended);
    /// Where the message takes the pointer, in the panel's window; nothing while it is not drawn.
    void setMascotPlace(std::optional<Rect> place);
    /// Puts the keyboard into the message, if there is one. It goes back when the message goes.
    void focusMascot();

    /// From now on steps aside for full-screen windows on its screen where the setting "fullScreen" is "stepAside": the
    /// closed notch is hidden, and nothing is announced. `watcher` must outlive the controller.
    void follow(FullScreenWatcher& watcher);
    /// Whether a full-screen window has the notch's screen, whatever the setting.
    bool isScreenFilled() const;

    /// Hides the whole notch; nothing opens while it is hidden.
    void setHidden(bool hidden);
    bool isHidden() const { return isHidden_; }

    void setPinned(bool pinned);
    /// The note's editor has the keyboard, or no longer.
    void setEditingNote(bool editing);
    void setDragging(bool dragging);
    void setEditingHome(bool editing);
    /// Whether the open panel stays open when the pointer leaves it.
    bool staysOpen() const;

    /// Finds the screen, the notch's size and the panel's place again.
    void layout();
    /// Looks where the pointer is, and opens or closes after the times for that.
    void refreshPointer();

    Rect screenFrame() const { return screenFrame_; }
    /// The panel's place on the desktop.
    Rect frame() const { return frame_; }
    /// The middle of the notch on the desktop.
    double centerX() const { return centerX_; }

private:
    enum class Pending { none, opening, closing };

    template <typename Change> void change(Change change);
    NotchModel::Mode mode() const { return model_.fields().mode; }
    void adopt(const Screen& screen, bool ownsCutout);
    void showShape();
    NotchTab tabThatFits() const;
    bool isPointerInside() const;
    void schedule(Pending kind);
    void cancelPending();
    void pendingIsDue(Pending kind);
    void endPeek();
    void pressed();
    void settingsChanged();
    void readPages();
    bool isPointerOverMascot() const;
    void followMascotAttention();
    void hideMascotAfter(Seconds delay);
    void mascotIsDue();
    void updateKeyboard();
    /// Nothing of the closed notch is to be seen.
    bool isAway() const { return isHidden_ || stepsAside_; }
    void updateStepsAside();
    void updateVisible();

    NotchModel& model_;
    Scheduler& scheduler_;
    UserDefaults& defaults_;
    Screens& screens_;
    Pointer& pointer_;
    PanelWindow& window_;

    Rect screenFrame_;
    Rect frame_;
    double centerX_ = 0;
    NotchShapes shapes_;
    double contentHeight_ = 0;
    bool openedFromKeyboard_ = false;
    bool hoverSuppressed_ = false;
    bool isHidden_ = false;
    bool stepsAside_ = false; ///< a full-screen window has the screen
    bool isVisible_ = false;  ///< as the window was told last

    std::optional<Rect> mascotPlace_;
    bool isMascotWatched_ = false;  ///< the message's view says that the person attends to it
    bool isMascotAttended_ = false; ///< and so it was when looked at last
    bool mascotHasKeyboard_ = false;

    FullScreenWatcher* fullScreen_ = nullptr;
    Pending pendingKind_ = Pending::none;
    Timer pending_;
    Timer peekWork_;
    Timer mascotWork_;
    Subscription fullScreenChanged_;
    Subscription screensChanged_;
    Subscription defaultsChanged_;
    Subscription moves_;
    Subscription presses_;
};

} // namespace kippo
