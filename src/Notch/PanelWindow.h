#pragma once

#include "Notch/NotchMetrics.h"

namespace kippo {

/// The window in which the notch is drawn: it is above everything, and only its visible shape takes the pointer.
/// Abstract so that the notch's rules are tested without a display; the real one is NotchWindow.
class PanelWindow {
public:
    virtual ~PanelWindow() = default;
    /// Where the window is on the desktop. The shapes hang from the middle of its top edge.
    virtual void place(const Rect& frame) = 0;
    /// Moves the visible shape to that of `mode`.
    virtual void show(const NotchShapes& shapes, NotchModel::Mode mode) = 0;
    virtual void setVisible(bool visible) = 0;
    /// Takes the keyboard for typing, or gives it back to the window that had it. Otherwise the panel never has it.
    virtual void setTakesKeyboard(bool takes) = 0;
};

/// Where the pointer is and what it does. Abstract so that the notch's rules are tested without one; the real one is
/// NotchWindow.
class Pointer {
public:
    virtual ~Pointer() = default;
    /// On the desktop, in logical pixels; nothing when the system does not tell.
    virtual std::optional<Point> position() const = 0;
    virtual bool isButtonPressed() const = 0;
    /// Whether to report what the pointer does anywhere on the desktop, and not just on the visible shape.
    virtual void setFollowing(bool everywhere) = 0;
    /// Calls back when the pointer comes, moves or leaves.
    [[nodiscard]] virtual Subscription observeMoves(std::function<void()> callback) = 0;
    /// Calls back when a button went down. The press reaches its window all the same.
    [[nodiscard]] virtual Subscription observePresses(std::function<void()> callback) = 0;
};

} // namespace kippo
