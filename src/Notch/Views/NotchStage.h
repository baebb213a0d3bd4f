#pragma once

#include "Notch/NotchMetrics.h"
#include "Notch/NotchMotion.h"

#include <QObject>
#include <QQmlEngine>
#include <QRectF>
#include <QSizeF>
#include <array>
#include <functional>

namespace kippo {

/// The notch's shape in motion, for QML: one spring, stepped by one animation that runs only while `moving`. How
/// visible each mode's content is follows from the shape, so a motion can turn round at any moment.
class NotchStage : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(bool moving READ isMoving NOTIFY movingChanged)
    Q_PROPERTY(double shapeWidth READ shapeWidth NOTIFY shapeChanged)
    Q_PROPERTY(double shapeHeight READ shapeHeight NOTIFY shapeChanged)
    Q_PROPERTY(double liveOpacity READ liveOpacity NOTIFY shapeChanged)
    Q_PROPERTY(double peekOpacity READ peekOpacity NOTIFY shapeChanged)
    Q_PROPERTY(double expandedOpacity READ expandedOpacity NOTIFY shapeChanged)
    Q_PROPERTY(QSizeF liveSize READ liveSize NOTIFY goalsChanged)
    Q_PROPERTY(QSizeF peekSize READ peekSize NOTIFY goalsChanged)
    Q_PROPERTY(QSizeF expandedSize READ expandedSize NOTIFY goalsChanged)
    Q_PROPERTY(double expandedShoulder READ expandedShoulder NOTIFY goalsChanged)
    /// What the mascot's message takes of the window besides the shape; empty for nothing.
    Q_PROPERTY(QRectF bubble READ bubble WRITE setBubble NOTIFY bubbleChanged)

public:
    using QObject::QObject;

    /// Moves to the shape of `mode`; at once the first time, and where motion is reduced.
    void show(const NotchShapes& shapes, NotchModel::Mode mode);
    void setReducedMotion(bool reduced) { isReduced_ = reduced; }
    /// Ends the motion where it is going.
    void settle();
    /// Moves on by `seconds`.
    Q_INVOKABLE void advance(double seconds);

    bool isMoving() const { return !motion_.isSettled(); }
    const NotchShape& shape() const { return motion_.shape(); }
    /// Where the motion goes.
    const NotchShape& target() const { return motion_.target(); }

    double shapeWidth() const { return shape().width; }
    double shapeHeight() const { return shape().height; }
    double liveOpacity() const { return opacity(NotchModel::Mode::live); }
    double peekOpacity() const { return opacity(NotchModel::Mode::peek); }
    double expandedOpacity() const { return opacity(NotchModel::Mode::expanded); }
    QSizeF liveSize() const { return sizeOf(shapes_.live); }
    QSizeF peekSize() const { return sizeOf(shapes_.peek); }
    QSizeF expandedSize() const { return sizeOf(shapes_.expanded); }
    /// How far the shoulders take the body in at each side.
    double expandedShoulder() const;
    const QRectF& bubble() const { return bubble_; }
    void setBubble(const QRectF& bubble);
    /// Called after the bubble came, moved or went; set by the application.
    std::function<void()> onBubble;

signals:
    void movingChanged();
    void shapeChanged();
    void goalsChanged();
    void bubbleChanged();

private:
    static QSizeF sizeOf(const NotchShape& shape) { return {shape.width, shape.height}; }
    double opacity(NotchModel::Mode mode) const { return opacities_[static_cast<std::size_t>(mode)]; }
    void follow(bool wasMoving);
    void updateOpacities();

    NotchShapes shapes_;
    NotchModel::Mode mode_ = NotchModel::Mode::collapsed;
    NotchMotion motion_{NotchShape{}};
    std::array<double, 4> opacities_{}; ///< by mode
    bool isReduced_ = false;
    QRectF bubble_;
};

} // namespace kippo
