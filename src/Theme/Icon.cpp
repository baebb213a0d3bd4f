#include "Theme/Icon.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace kippo {

namespace {

/// A wheel with eight teeth around a hub.
QPainterPath gear() {
    constexpr int teeth = 8;
    constexpr double outer = 9.2, inner = 6.9;
    QPainterPath path;
    for (int corner = 0; corner < 4 * teeth; ++corner) {
        const double share = (corner + 0.5) / (4.0 * teeth);
        const double angle = 2 * std::numbers::pi * share;
        const double radius = corner % 4 < 2 ? outer : inner;
        const QPointF point{12 + radius * std::cos(angle), 12 + radius * std::sin(angle)};
        corner == 0 ? path.moveTo(point) : path.lineTo(point);
    }
    path.closeSubpath();
    path.addEllipse(QPointF{12, 12}, 2.9, 2.9);
    return path;
}

/// The icon's strokes in a square of 24 units.
QPainterPath strokes(Icon::Name name) {
    QPainterPath path;
    const auto line = [&path](std::initializer_list<QPointF> points) {
        path.moveTo(*points.begin());
        for (const QPointF& point : points) {
            path.lineTo(point);
        }
    };
    switch (name) {
    case Icon::Gear:
        return gear();
    case Icon::Sliders:
        line({{4, 8}, {12.5, 8}});
        line({{18.5, 8}, {20, 8}});
        path.addEllipse(QPointF{15.5, 8}, 2.7, 2.7);
        line({{4, 16}, {5.5, 16}});
        line({{11.5, 16}, {20, 16}});
        path.addEllipse(QPointF{8.5, 16}, 2.7, 2.7);
        break;
    case Icon::Notch: // a screen, and what hangs from its upper edge
        path.addRoundedRect(QRectF{3.5, 5, 17, 14}, 2.5, 2.5);
        line({{8.5, 5}, {8.5, 8.5}, {15.5, 8.5}, {15.5, 5}});
        break;
    case Icon::Agents: // a prompt in its window
        path.addRoundedRect(QRectF{3.5, 4.5, 17, 15}, 3, 3);
        line({{7.6, 9.2}, {10.6, 12}, {7.6, 14.8}});
        line({{12.8, 15}, {16.4, 15}});
        break;
    case Icon::Focus: // a clock that runs
        path.addEllipse(QPointF{12, 13}, 7.8, 7.8);
        line({{12, 8.6}, {12, 13}, {14.8, 14.8}});
        line({{9.6, 2.8}, {14.4, 2.8}});
        break;
    case Icon::Pin:
        line({{8.6, 3.5}, {15.4, 3.5}});
        line({{9.6, 3.5}, {9.6, 10}, {6.6, 14}, {17.4, 14}, {14.4, 10}, {14.4, 3.5}});
        line({{12, 14}, {12, 20.5}});
        break;
    case Icon::List:
        line({{4.5, 6.5}, {19.5, 6.5}});
        line({{4.5, 12}, {19.5, 12}});
        line({{4.5, 17.5}, {13.5, 17.5}});
        break;
    case Icon::Bars:
        line({{5.5, 19}, {5.5, 13}});
        line({{12, 19}, {12, 5}});
        line({{18.5, 19}, {18.5, 9.5}});
        break;
    case Icon::Box: // with a lid
        path.addRoundedRect(QRectF{3.5, 5, 17, 4.5}, 1.5, 1.5);
        line({{5, 9.5}, {5, 19}, {19, 19}, {19, 9.5}});
        line({{9.8, 13.4}, {14.2, 13.4}});
        break;
    case Icon::Chevron:
        line({{9, 5.5}, {15.5, 12}, {9, 18.5}});
        break;
    case Icon::Cross:
        line({{6, 6}, {18, 18}});
        line({{18, 6}, {6, 18}});
        break;
    case Icon::Tick:
        line({{5, 12.6}, {10, 17.4}, {19, 7}});
        break;
    case Icon::Warning:
        path.addEllipse(QPointF{12, 12}, 8.6, 8.6);
        line({{12, 7.6}, {12, 12.8}});
        line({{12, 16.3}, {12, 16.31}});
        break;
    case Icon::Bell:
        path.moveTo(5, 17);
        path.cubicTo({7.2, 14.6}, {6.6, 12.6}, {6.8, 10});
        path.cubicTo({7.2, 6.6}, {9.2, 4.8}, {12, 4.8});
        path.cubicTo({14.8, 4.8}, {16.8, 6.6}, {17.2, 10});
        path.cubicTo({17.4, 12.6}, {16.8, 14.6}, {19, 17});
        path.closeSubpath();
        line({{10.3, 20.2}, {13.7, 20.2}});
        break;
    case Icon::Clock:
        path.addEllipse(QPointF{12, 12}, 8.6, 8.6);
        line({{12, 7.2}, {12, 12}, {15.4, 14}});
        break;
    case Icon::Info:
        path.addEllipse(QPointF{12, 12}, 8.6, 8.6);
        line({{12, 11.4}, {12, 16.4}});
        line({{12, 7.7}, {12, 7.71}});
        break;
    case Icon::Play:
        line({{7.5, 4.8}, {19, 12}, {7.5, 19.2}});
        path.closeSubpath();
        break;
    case Icon::Plus:
        line({{12, 5.5}, {12, 18.5}});
        line({{5.5, 12}, {18.5, 12}});
        break;
    case Icon::Minus:
        line({{5.5, 12}, {18.5, 12}});
        break;
    }
    return path;
}

} // namespace

Icon::Icon(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    setImplicitSize(16, 16);
}

void Icon::setName(Name name) {
    if (name_ != name) {
        name_ = name;
        update();
        emit nameChanged();
    }
}

void Icon::setColor(const QColor& color) {
    if (color_ != color) {
        color_ = color;
        update();
        emit colorChanged();
    }
}

void Icon::paint(QPainter* painter) {
    const double side = std::min(width(), height());
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate((width() - side) / 2, (height() - side) / 2);
    painter->scale(side / 24, side / 24);
    painter->strokePath(strokes(name_), QPen{color_, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
}

} // namespace kippo
