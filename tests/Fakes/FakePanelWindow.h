#pragma once

#include "Notch/PanelWindow.h"

namespace kippo {

/// A window that remembers what it was told last.
class FakePanelWindow : public PanelWindow {
public:
    Rect frame;
    NotchShape shape;
    bool isVisible = false;
    bool hasKeyboard = false;

    void place(const Rect& place) override { frame = place; }
    void show(const NotchShapes& shapes, NotchModel::Mode mode) override { shape = shapes[mode]; }
    void setVisible(bool visible) override { isVisible = visible; }
    void setTakesKeyboard(bool takes) override { hasKeyboard = takes; }
};

/// A pointer that the test moves and clicks.
class FakePointer final : public Pointer {
public:
    bool isFollowing = false;

    std::optional<Point> position() const override { return at_; }
    bool isButtonPressed() const override { return isPressed_; }
    void setFollowing(bool everywhere) override { isFollowing = everywhere; }
    [[nodiscard]] Subscription observeMoves(std::function<void()> callback) override {
        return moves_.add(std::move(callback));
    }
    [[nodiscard]] Subscription observePresses(std::function<void()> callback) override {
        return presses_.add(std::move(callback));
    }

    void moveTo(std::optional<Point> point) {
        at_ = point;
        moves_.notify();
    }
    void press() {
        isPressed_ = true;
        presses_.notify();
    }
    void release() { isPressed_ = false; }

private:
    std::optional<Point> at_ = Point{-1, -1};
    bool isPressed_ = false;
    Observers moves_;
    Observers presses_;
};

} // namespace kippo
