#include "App/TrayIcon.h"

#include <QPainter>
#include <QPainterPath>
#include <QStandardPaths>
#include <algorithm>
#include <array>

namespace kippo::TrayIcon {

namespace {

constexpr std::array sizes{16, 22, 24, 32, 48, 64};

constexpr QColor headColor{0x94, 0x86, 0xca};
constexpr QColor dotColor{0xff, 0xb3, 0x40};

constexpr auto name = "io.github.kippo.Kippo-symbolic";

/// The right ear, and mirrored the left.
QPainterPath earPath() {
    QPainterPath path{{8, -69}};
    path.cubicTo(12, -80, 22, -91, 29.5, -94);
    path.cubicTo(33, -95.5, 36, -94, 36.5, -90);
    path.cubicTo(38, -78, 36, -64, 31, -52);
    path.closeSubpath();
    return path;
}

/// The head, in which his face is open.
QPainterPath headPath() {
    QPainterPath path{{0, -73}};
    path.cubicTo(22, -73, 33, -58, 33, -41);
    path.cubicTo(33, -24, 21, -14, 0, -14);
    path.cubicTo(-21, -14, -33, -24, -33, -41);
    path.cubicTo(-33, -58, -22, -73, 0, -73);
    path.closeSubpath();
    path.moveTo(0, -54);
    path.lineTo(4.5, -54);
    path.cubicTo(7.5, -54, 7, -61, 12, -61);
    path.cubicTo(22, -61, 26, -52, 26, -42);
    path.cubicTo(26, -28, 15, -20.5, 0, -20.5);
    path.cubicTo(-15, -20.5, -26, -28, -26, -42);
    path.cubicTo(-26, -52, -22, -61, -12, -61);
    path.cubicTo(-7, -61, -7.5, -54, -4.5, -54);
    path.closeSubpath();
    return path;
}

QPainterPath mouthPath() {
    QPainterPath path{{-6, -31.5}};
    path.cubicTo(-3, -28, 3, -28, 6, -31.5);
    path.cubicTo(5, -24, -5, -24, -6, -31.5);
    return path;
}

/// As the symbolic icon has it, on a plane of 16 by 16.
void paintHead(QPainter& painter) {
    painter.save();
    painter.translate(8, 18.2);
    painter.scale(0.188, 0.188);
    painter.setBrush(headColor);
    painter.drawPath(earPath());
    painter.scale(-1, 1);
    painter.drawPath(earPath());
    painter.drawPath(headPath());
    painter.drawPath(mouthPath());
    for (const double side : {-12.5, 12.5}) {
        painter.drawEllipse(QPointF{side, -42}, 6.5, 8.5);
    }
    painter.restore();
}

/// In the lower right corner, apart from the head by a ring of nothing.
void paintDot(QPainter& painter) {
    constexpr QPointF center{12.8, 12.8};
    constexpr double radius = 2.9;
    constexpr double gap = 1.1;
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.drawEllipse(center, radius + gap, radius + gap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setBrush(dotColor);
    painter.drawEllipse(center, radius, radius);
}

QImage picture(int size, bool withDot) {
    QImage image{size, size, QImage::Format_ARGB32_Premultiplied};
    image.fill(Qt::transparent);
    QPainter painter{&image};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 16.0, size / 16.0);
    painter.setPen(Qt::NoPen);
    paintHead(painter);
    if (withDot) {
        paintDot(painter);
    }
    return image;
}

} // namespace

QList<QImage> pictures(bool withDot) {
    QList<QImage> list;
    for (const int size : sizes) {
        list.append(picture(size, withDot));
    }
    return list;
}

QString symbolicName(const QString& desktop) {
    constexpr std::array<QStringView, 6> recoloring{u"GNOME", u"Unity", u"Budgie", u"X-Cinnamon", u"Pantheon", u"XFCE"};
    const bool recolors = std::ranges::any_of(
        recoloring, [&](QStringView known) { return desktop.split(u':').contains(known, Qt::CaseInsensitive); });
    const QString file = QStringLiteral("icons/hicolor/symbolic/apps/%1.svg").arg(QLatin1String{name});
    const bool isInstalled = !QStandardPaths::locate(QStandardPaths::GenericDataLocation, file).isEmpty();
    return recolors && isInstalled ? QString::fromLatin1(name) : QString{};
}

} // namespace kippo::TrayIcon
