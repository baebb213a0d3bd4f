#include "Theme/StatusGlyph.h"

#include <QPainter>

namespace kippo {

StatusGlyph::StatusGlyph(QQuickItem* parent) : QQuickPaintedItem(parent) { setAntialiasing(true); }

void StatusGlyph::setStatus(AgentLook::Status status) {
    if (status_ != status) {
        status_ = status;
        update();
        emit statusChanged();
    }
}

void StatusGlyph::setColor(const QColor& color) {
    if (color_ != color) {
        color_ = color;
        update();
        emit colorChanged();
    }
}

void StatusGlyph::paint(QPainter* painter) {
    const double side = std::min(width(), height());
    painter->setRenderHint(QPainter::Antialiasing);
    // Drawn in a square of 10 around the origin.
    painter->translate(width() / 2, height() / 2);
    painter->scale(side / 10, side / 10);
    const QPen stroke{color_, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
    switch (status_) {
    case AgentLook::Status::NeedsYou:
        painter->rotate(45);
        painter->setPen(Qt::NoPen);
        painter->setBrush(color_);
        painter->drawRoundedRect(QRectF{-3.6, -3.6, 7.2, 7.2}, 1.1, 1.1);
        break;
    case AgentLook::Status::Working:
        painter->setPen(Qt::NoPen);
        painter->setBrush(color_);
        painter->drawEllipse(QPointF{}, 4, 4);
        break;
    case AgentLook::Status::Done: {
        painter->setPen(stroke);
        const QPointF tick[] = {{-3.8, 0.4}, {-1.1, 3.1}, {3.9, -2.9}};
        painter->drawPolyline(tick, 3);
        break;
    }
    case AgentLook::Status::Idle:
        painter->setPen(stroke);
        painter->setBrush(Qt::NoBrush);
        painter->drawEllipse(QPointF{}, 3.2, 3.2);
        break;
    }
}

} // namespace kippo
