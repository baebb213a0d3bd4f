#include "Focus/Views/CountdownRing.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace kippo {

CountdownRing::CountdownRing(QQuickItem* parent) : QQuickPaintedItem(parent) { setAntialiasing(true); }

void CountdownRing::paint(QPainter* painter) {
    const double side = std::min(width(), height()) - thickness_;
    const QRectF circle{(width() - side) / 2, (height() - side) / 2, side, side};
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen{track_, thickness_});
    painter->drawEllipse(circle);
    if (progress_ >= 1) {
        return;
    }
    // A sixteenth of a degree is the painter's unit.
    constexpr int degree = 16;
    constexpr int top = 90 * degree;
    constexpr int whole = 360 * degree;
    const int left = static_cast<int>(std::lround(whole * (1 - std::max(progress_, 0.0))));
    painter->setPen(QPen{color_, thickness_, Qt::SolidLine, Qt::RoundCap});
    painter->drawArc(circle, top, left);
}

} // namespace kippo
