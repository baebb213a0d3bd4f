#include "App/AppIcon.h"

#include "Mascot/Views/MascotPainter.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace kippo::AppIcon {

namespace {

constexpr QRectF tile{8, 8, 112, 112};
constexpr double tileRadius = 27;

constexpr QColor duskAbove{0xff, 0xf4, 0xe0};
constexpr QColor duskBelow{0xff, 0xd3, 0xa3};

/// The notch's half at the right of the tile's middle, and the other back.
QPainterPath notchPath() {
    QPainterPath path{{64, 8}};
    path.lineTo(98, 8);
    path.cubicTo(94, 8, 92, 10, 92, 14);
    path.lineTo(92, 18);
    path.cubicTo(92, 24, 89, 27, 83, 27);
    path.lineTo(45, 27);
    path.cubicTo(39, 27, 36, 24, 36, 18);
    path.lineTo(36, 14);
    path.cubicTo(36, 10, 34, 8, 30, 8);
    path.closeSubpath();
    return path;
}

/// As the installed icon has it, on a plane of 128 by 128.
void paint(QPainter& painter) {
    QPainterPath outline;
    outline.addRoundedRect(tile, tileRadius, tileRadius);
    QLinearGradient dusk{0, 0, 0, 128};
    dusk.setColorAt(0, duskAbove);
    dusk.setColorAt(1, duskBelow);
    painter.setPen(Qt::NoPen);
    painter.fillPath(outline, dusk);
    painter.setClipPath(outline);
    painter.fillPath(notchPath(), Qt::black);
    painter.translate(64, 133);
    painter.scale(1.12, 1.12);
    MascotPainter::paint(painter, MascotPose::atRest(MascotState::idle));
}

QPixmap picture(int size) {
    QPixmap pixmap{size, size};
    pixmap.fill(Qt::transparent);
    QPainter painter{&pixmap};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 128.0, size / 128.0);
    paint(painter);
    return pixmap;
}

} // namespace

QIcon icon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128}) {
        icon.addPixmap(picture(size));
    }
    return icon;
}

} // namespace kippo::AppIcon
