#pragma once

#include "Notch/PanelWindow.h"

#include <QQuickView>
#include <QSocketNotifier>
#include <QTimer>
#include <memory>

namespace kippo {

class X11Panel;

/// The panel on the desktop: a window that no window manager touches, above full-screen windows too, that takes the
/// pointer only where the shape is drawn and the keyboard only when told to. On another platform than X11 it is a plain
/// window, which is enough for looking at it offscreen.
class NotchWindow final : public PanelWindow, public Pointer {
public:
    NotchWindow();
    ~NotchWindow() override;
    NotchWindow(const NotchWindow&) = delete;
    NotchWindow& operator=(const NotchWindow&) = delete;

    /// What is seen; give it its QML source. The scene's size is that of the panel.
    QQuickView& view();

    /// Called with what `show` is told. Whoever draws moves the shape there and reports every step by `setShape`.
    std::function<void(const NotchShapes&, NotchModel::Mode)> onShow;
    /// The shape as it is drawn now: takes the pointer, and without a compositor is all that there is of the window.
    void setShape(const NotchShape& drawn);
    /// What is drawn besides the shape, in the window; empty for nothing.
    void setBubble(const Rect& bubble, double radius);

    void place(const Rect& frame) override;
    void show(const NotchShapes& shapes, NotchModel::Mode mode) override;
    void setVisible(bool visible) override;
    void setTakesKeyboard(bool takes) override;

    std::optional<Point> position() const override;
    bool isButtonPressed() const override;
    void setFollowing(bool everywhere) override;
    [[nodiscard]] Subscription observeMoves(std::function<void()> callback) override;
    [[nodiscard]] Subscription observePresses(std::function<void()> callback) override;

private:
    class View;

    void applyShape();
    void listenToX11();
    void readX11();
    void pointerIsOver(bool over);
    static void syncWithQt();

    std::unique_ptr<View> view_;
    std::unique_ptr<X11Panel> x11_; ///< null on other platforms
    std::unique_ptr<QSocketNotifier> x11Readable_;
    NotchShape drawn_;
    Rect bubble_;
    double bubbleRadius_ = 0;
    Rect frame_;
    bool takesKeyboard_ = false;
    Observers moves_;
    Observers presses_;
};

} // namespace kippo
