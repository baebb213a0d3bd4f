#include "Theme/AgentBadge.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace kippo {

namespace {

/// The glyph's strokes in a square of 24 units.
QPainterPath glyph(AgentLook::Kind kind) {
    QPainterPath path;
    const auto line = [&path](std::initializer_list<QPointF> points) {
        path.moveTo(*points.begin());
        for (const QPointF& point : points) {
            path.lineTo(point);
        }
    };
    switch (kind) {
    case AgentLook::Kind::Claude: // an open ring around its point
        path.arcMoveTo(QRectF{6, 6, 12, 12}, 50);
        path.arcTo(QRectF{6, 6, 12, 12}, 50, 260);
        line({{12, 12}, {12.01, 12}});
        break;
    case AgentLook::Kind::Codex: // angle brackets
        line({{9.6, 7}, {5.6, 12}, {9.6, 17}});
        line({{14.4, 7}, {18.4, 12}, {14.4, 17}});
        break;
    case AgentLook::Kind::Cursor: // a text cursor
        line({{9, 6}, {12, 7.4}, {15, 6}});
        line({{12, 7.4}, {12, 16.6}});
        line({{9, 18}, {12, 16.6}, {15, 18}});
        break;
    case AgentLook::Kind::Gemini: // two that overlap
        path.addEllipse(QPointF{9.4, 12}, 4.1, 4.1);
        path.addEllipse(QPointF{14.6, 12}, 4.1, 4.1);
        break;
    case AgentLook::Kind::Opencode: // an open bracket pair
        line({{9.5, 6.5}, {6.5, 6.5}, {6.5, 17.5}, {9.5, 17.5}});
        line({{14.5, 6.5}, {17.5, 6.5}, {17.5, 17.5}, {14.5, 17.5}});
        break;
    case AgentLook::Kind::Aider: // a helping hand's cross
        line({{12, 6.5}, {12, 17.5}});
        line({{6.5, 12}, {17.5, 12}});
        break;
    case AgentLook::Kind::ClaudeDesktop: // a window
        path.addRoundedRect(QRectF{6, 7, 12, 10}, 2, 2);
        line({{6, 10.4}, {18, 10.4}});
        break;
    case AgentLook::Kind::Custom: // a prompt
        line({{7, 8}, {11, 12}, {7, 16}});
        line({{13, 16}, {17.5, 16}});
        break;
    }
    return path;
}

} // namespace

AgentBadge::AgentBadge(QQuickItem* parent) : QQuickPaintedItem(parent) { setAntialiasing(true); }

void AgentBadge::setKind(AgentLook::Kind kind) {
    if (kind_ != kind) {
        kind_ = kind;
        update();
        emit kindChanged();
    }
}

void AgentBadge::paint(QPainter* painter) {
    const double side = std::min(width(), height());
    const QColor tone = QColor::fromRgb(tint(static_cast<AgentKind>(kind_)));
    QLinearGradient ground{0, 0, 0, side};
    ground.setColorAt(0, tone.lighter(108));
    ground.setColorAt(1, tone.darker(116));
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(ground);
    painter->drawRoundedRect(QRectF{0, 0, side, side}, side * 0.28, side * 0.28);
    painter->scale(side / 24, side / 24);
    painter->strokePath(glyph(kind_), QPen{QColor{0, 0, 0, 210}, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
}

} // namespace kippo
