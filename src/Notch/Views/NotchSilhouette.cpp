#include "Notch/Views/NotchSilhouette.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace kippo {

namespace {

QPainterPath painterPath(const NotchOutline& outline) {
    const auto point = [](Point from) { return QPointF{from.x, from.y}; };
    const NotchOutline::Path path = outline.path();
    QPainterPath result{point(path.start)};
    for (const NotchOutline::Segment& segment : path.segments) {
        if (segment.isCurve) {
            result.cubicTo(point(segment.control1), point(segment.control2), point(segment.end));
        } else {
            result.lineTo(point(segment.end));
        }
    }
    return result;
}

/// One pixel inside the lower edge, gone half-way up: enough to tell the panel from a black wallpaper.
void paintLowerEdge(QPainter& painter, const QPainterPath& path, double height, double strength) {
    QLinearGradient light{0, height / 2, 0, height};
    light.setColorAt(0, QColor{255, 255, 255, 0});
    light.setColorAt(1, QColor::fromRgbF(1, 1, 1, static_cast<float>(0.11 * strength)));
    painter.setClipPath(path);
    painter.strokePath(path, QPen{light, 2});
}

} // namespace

NotchSilhouette::NotchSilhouette(QQuickItem* parent) : QQuickPaintedItem(parent) { setAntialiasing(true); }

void NotchSilhouette::setStage(NotchStage* stage) {
    if (stage_ == stage) {
        return;
    }
    if (stage_) {
        stage_->disconnect(this);
    }
    stage_ = stage;
    if (stage_) {
        connect(stage_, &NotchStage::shapeChanged, this, [this] { update(); });
    }
    update();
    emit stageChanged();
}

void NotchSilhouette::setColor(const QColor& color) {
    if (color_ != color) {
        color_ = color;
        update();
        emit colorChanged();
    }
}

void NotchSilhouette::setHasNotch(bool hasNotch) {
    if (hasNotch_ != hasNotch) {
        hasNotch_ = hasNotch;
        update();
        emit hasNotchChanged();
    }
}

QColor NotchSilhouette::ground() const {
    const auto share = static_cast<float>(hasNotch_ ? stage_->expandedOpacity() : 1);
    return QColor::fromRgbF(color_.redF() * share, color_.greenF() * share, color_.blueF() * share);
}

void NotchSilhouette::paint(QPainter* painter) {
    if (!stage_) {
        return;
    }
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(width() / 2, 0);
    const QPainterPath path = painterPath(NotchOutline{stage_->shape()});
    painter->fillPath(path, ground());
    if (stage_->expandedOpacity() > 0) {
        paintLowerEdge(*painter, path, stage_->shapeHeight(), stage_->expandedOpacity());
    }
}

} // namespace kippo
