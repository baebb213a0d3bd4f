#include "Mascot/Views/MascotPainter.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace kippo {

namespace {

// Light enough for the black panel and dark enough for a white window.
constexpr QColor fur{0x84, 0x76, 0xb8};
constexpr QColor furShade{0x73, 0x65, 0xa7};
constexpr QColor wingFur{0x66, 0x59, 0x9a};
constexpr QColor wingInside{0x77, 0x69, 0xab};
constexpr QColor cream{0xff, 0xf0, 0xdc};
constexpr QColor rose{0xf4, 0xa5, 0x9e};
constexpr QColor ink{0x26, 0x20, 0x38};
constexpr QColor fangEdge{0x6b, 0x5f, 0x80};
constexpr QColor sheetLines{0xb9, 0xae, 0xd8};
constexpr QColor alarmColor{0xff, 0xb3, 0x40};
constexpr QColor dropColor{0x8c, 0xc8, 0xff};
constexpr std::array<QColor, 4> confetti{
    {{0xff, 0xb3, 0x40}, {0x5a, 0xa9, 0xff}, {0x4f, 0xd0, 0x8f}, {0xf4, 0xa5, 0x9e}}};

// Where he sways.
constexpr double hips = 10;

QPointF mix(QPointF from, QPointF to, double part) { return from + (to - from) * part; }

/// Draws one of a pair: as given for the right side, mirrored for the left.
template <typename Draw> void each(QPainter& painter, const MascotPose::Pair& pair, Draw draw) {
    painter.save();
    painter.scale(-1, 1);
    draw(pair.left);
    painter.restore();
    draw(pair.right);
}

void fill(QPainter& painter, const QColor& color) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
}

void line(QPainter& painter, const QColor& color, double width) {
    painter.setPen(QPen{color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    painter.setBrush(Qt::NoBrush);
}

/// Head and body are one pear.
QPainterPath bodyPath() {
    QPainterPath path{{0, -72}};
    path.cubicTo(21, -72, 31, -57, 31, -40);
    path.cubicTo(31, -18, 26, -5, 0, -5);
    path.cubicTo(-26, -5, -31, -18, -31, -40);
    path.cubicTo(-31, -57, -21, -72, 0, -72);
    return path;
}

/// His face, into whose brow the fur dips with the outline of the notch.
QPainterPath facePath() {
    QPainterPath path{{0, -55}};
    path.lineTo(4.5, -55);
    path.cubicTo(7.5, -55, 7, -62, 12, -62);
    path.cubicTo(22, -62, 26, -52, 26, -42);
    path.cubicTo(26, -28, 15, -21.5, 0, -21.5);
    path.cubicTo(-15, -21.5, -26, -28, -26, -42);
    path.cubicTo(-26, -52, -22, -62, -12, -62);
    path.cubicTo(-7, -62, -7.5, -55, -4.5, -55);
    path.closeSubpath();
    return path;
}

void drawEar(QPainter& painter, double fold) {
    painter.save();
    painter.translate(16, -60);
    painter.rotate(fold + 13);
    QPainterPath outer{{-14, 3}};
    outer.cubicTo(-13, -14, -5, -29, 4, -36);
    outer.cubicTo(7, -38.5, 10, -38, 11.5, -34);
    outer.cubicTo(16, -22, 17, -6, 14, 12);
    outer.closeSubpath();
    fill(painter, fur);
    painter.drawPath(outer);
    QPainterPath inner{{-7, -2}};
    inner.cubicTo(-6, -13, -1, -22, 5, -28);
    inner.cubicTo(6.5, -29.2, 7.5, -29, 8.2, -27);
    inner.cubicTo(11, -18, 11.5, -8, 10, 4);
    inner.closeSubpath();
    fill(painter, rose);
    painter.drawPath(inner);
    painter.restore();
}

/// Folded along his side, or spread with two bays between its fingers.
void drawWing(QPainter& painter, double spread, double raise) {
    const QPointF shoulder{22, -43};
    painter.save();
    painter.translate(shoulder);
    painter.rotate(-raise);
    painter.translate(-shoulder);
    const QPointF wrist = mix({36, -38}, {49, -62}, spread);
    const QPointF tip = mix({33, -9}, {71, -36}, spread);
    const QPointF bay1 = mix({33, -9}, {56, -38}, spread);
    const QPointF finger = mix({30, -7}, {52, -19}, spread);
    const QPointF bay2 = mix({27, -8}, {40, -25}, spread);
    const QPointF hip = mix({22, -10}, {25, -11}, spread);
    QPainterPath path{shoulder};
    path.quadTo(mix({32, -46}, {34, -62}, spread), wrist);
    path.cubicTo(mix({41, -28}, {60, -62}, spread), mix({40, -16}, {70, -50}, spread), tip);
    path.quadTo(bay1, finger);
    path.quadTo(bay2, hip);
    path.closeSubpath();
    painter.setPen(QPen{wingFur, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    painter.setBrush(spread > 0.3 ? wingInside : wingFur);
    painter.drawPath(path);
    painter.restore();
}

/// Both wings drawn before him like a blanket; their tips lead.
void drawWrap(QPainter& painter, double wrap) {
    const double tips = std::min(1.0, 1.6 * wrap);
    each(painter, {1, 1}, [&](double) {
        const QPointF edge = mix({30, -42}, {-1, -23}, wrap);
        const QPointF corner = mix({29, -14}, {-4, -7}, tips);
        QPainterPath path{{29, -43}};
        path.quadTo(mix({30, -42}, {16, -21}, wrap), edge);
        path.quadTo(mix({30, -24}, {2, -14}, tips), corner);
        path.cubicTo(mix({29, -8}, {6, -1}, tips), {25, -2}, {32, -13});
        path.cubicTo(36, -23, 35, -36, 29, -43);
        painter.setPen(QPen{wingFur, 2.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
        painter.setBrush(wingInside);
        painter.drawPath(path);
    });
}

void drawFeet(QPainter& painter, const MascotPose& pose) {
    fill(painter, wingFur);
    painter.drawRoundedRect(QRectF{-19 + pose.stride, -7 - pose.feet.left, 15, 8.5}, 4.2, 4.2);
    painter.drawRoundedRect(QRectF{4 - pose.stride, -7 - pose.feet.right, 15, 8.5}, 4.2, 4.2);
}

void drawEye(QPainter& painter, const MascotPose& pose, double side, double open) {
    const QPointF middle{13.2 * side, -42.5};
    if (pose.joy > 0.5) {
        QPainterPath arc{middle + QPointF{-6, 2.5}};
        arc.quadTo(middle + QPointF{0, -8}, middle + QPointF{6, 2.5});
        line(painter, ink, 3.4);
        painter.drawPath(arc);
        return;
    }
    if (open < 0.18) {
        QPainterPath arc{middle + QPointF{-6, 0.5}};
        arc.quadTo(middle + QPointF{0, 5.5}, middle + QPointF{6, 0.5});
        line(painter, ink, 3);
        painter.drawPath(arc);
        return;
    }
    const double wide = std::max(0.0, open - 1);
    const double width = 6.9 + 2.5 * wide;
    const double height = 8.7 * (1 + wide);
    const QPointF at = middle + QPointF{1.8 * pose.look.left, -1.6 * pose.look.right};
    // A tired lid hangs outward.
    const double lid = middle.y() - 11 + 17 * (1 - open);
    const double droop = side * 7 * (1 - open) * open;
    QPainterPath lidPath{{middle.x() - 8, lid - droop}};
    lidPath.quadTo(middle.x(), lid - 3.4 * open, middle.x() + 8, lid + droop);
    QPainterPath below = lidPath;
    below.lineTo(middle.x() + 14, middle.y() + 20);
    below.lineTo(middle.x() - 14, middle.y() + 20);
    painter.save();
    if (open < 0.97) {
        painter.setClipPath(below, Qt::IntersectClip);
    }
    fill(painter, ink);
    painter.drawEllipse(at, width, height);
    fill(painter, Qt::white);
    painter.drawEllipse(
        at + QPointF{2.2 + 0.8 * pose.look.left, (open < 0.8 ? 0.05 : -0.4) * height - 0.6 * pose.look.right},
        2.7 - 0.6 * (open < 0.8), 2.9 - 0.8 * (open < 0.8));
    painter.drawEllipse(at + QPointF{-2.4, 0.4 * height}, 1.2, 1.2);
    painter.restore();
    if (open < 0.85) {
        line(painter, ink, 2.2);
        painter.drawPath(lidPath);
    }
}

void drawBrow(QPainter& painter, double side, double worry) {
    line(painter, QColor{0x66, 0x59, 0x9a, static_cast<int>(255 * std::min(1.0, worry))}, 2.4);
    painter.drawLine(QPointF{side * 8.5, -56.5}, QPointF{side * 17, -53});
}

void drawMouth(QPainter& painter, const MascotPose& pose) {
    const double y = -31;
    if (pose.mouth < 0.12) {
        if (pose.smile > 0) {
            const double lip = y + 1.4 * pose.smile;
            QPainterPath fang{{0.9, lip + 0.4}};
            fang.lineTo(5.1, lip - 0.8);
            fang.lineTo(3.9, lip + 4.4);
            fang.closeSubpath();
            painter.setPen(QPen{fangEdge, 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
            painter.setBrush(Qt::white);
            painter.drawPath(fang);
        }
        QPainterPath lips{{-5.8, y - pose.smile}};
        lips.quadTo(0, y + 6.4 * pose.smile, 5.8, y - pose.smile);
        line(painter, ink, 2.1);
        painter.drawPath(lips);
        return;
    }
    const double half = 3.4 + 2.2 * std::max(0.0, pose.smile) + 0.6 * pose.mouth;
    const double depth = 3 + 7 * pose.mouth;
    const double top = y - 2 + 1.2 * std::min(0.0, pose.smile);
    const double flat = std::clamp(0.5 + pose.smile, 0.0, 1.0);
    QPainterPath path{{-half, top}};
    path.quadTo(0, top - 3.5 * (1 - flat), half, top);
    path.cubicTo(half + 0.6, top + depth, -half - 0.6, top + depth, -half, top);
    fill(painter, ink);
    painter.drawPath(path);
    painter.save();
    painter.setClipPath(path, Qt::IntersectClip);
    fill(painter, rose);
    painter.drawEllipse(QPointF{0, top + depth * 0.86}, half * 0.8, depth * 0.34);
    fill(painter, Qt::white);
    const std::array<QPointF, 3> fang{{{1.2, top - 1.6}, {4.2, top - 1.6}, {2.8, top + 3}}};
    painter.drawPolygon(fang.data(), 3);
    painter.restore();
}

void drawFace(QPainter& painter, const MascotPose& pose) {
    painter.save();
    painter.translate(4.5 * pose.turn, -pose.nod);
    fill(painter, cream);
    painter.drawPath(facePath());
    painter.setClipPath(facePath());
    painter.translate(2.5 * pose.turn, -0.4 * pose.nod);
    painter.scale(1 - 0.07 * std::abs(pose.turn), 1);
    QColor cheek = rose;
    cheek.setAlphaF(static_cast<float>(0.7 * pose.blush));
    fill(painter, cheek);
    painter.drawEllipse(QPointF{-19, -32.5}, 4.6, 3);
    painter.drawEllipse(QPointF{19, -32.5}, 4.6, 3);
    drawEye(painter, pose, -1, pose.eyes.left);
    drawEye(painter, pose, 1, pose.eyes.right);
    if (pose.worry > 0.05) {
        drawBrow(painter, -1, pose.worry);
        drawBrow(painter, 1, pose.worry);
    }
    drawMouth(painter, pose);
    painter.restore();
}

template <typename Draw> void place(QPainter& painter, const MascotPose::Thing& thing, Draw draw) {
    if (thing.size <= 0.01) {
        return;
    }
    painter.save();
    painter.translate(thing.x, -thing.y);
    painter.rotate(thing.angle);
    painter.scale(thing.size, thing.size);
    draw();
    painter.restore();
}

void drawSheet(QPainter& painter) {
    QPainterPath path{{-10, -13}};
    path.lineTo(5, -13);
    path.lineTo(10, -8);
    path.lineTo(10, 13);
    path.lineTo(-10, 13);
    path.closeSubpath();
    painter.setPen(QPen{wingFur, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    painter.setBrush(Qt::white);
    painter.drawPath(path);
    line(painter, sheetLines, 2.2);
    painter.drawLine(QPointF{-5, -5}, QPointF{4, -5});
    painter.drawLine(QPointF{-5, 0.5}, QPointF{5, 0.5});
    painter.drawLine(QPointF{-5, 6}, QPointF{1, 6});
}

void drawAlarm(QPainter& painter) {
    QPainterPath stroke{{-3.6, -17}};
    stroke.cubicTo(-3.6, -22, 3.6, -22, 3.6, -17);
    stroke.lineTo(2.2, -4);
    stroke.cubicTo(2, -2, -2, -2, -2.2, -4);
    stroke.closeSubpath();
    fill(painter, alarmColor);
    painter.drawPath(stroke);
    painter.drawEllipse(QPointF{0, 3}, 3.3, 3.3);
}

void drawDrop(QPainter& painter) {
    QPainterPath path{{0, -8}};
    path.cubicTo(2, -3, 4.6, -1, 4.6, 2.4);
    path.cubicTo(4.6, 8, -4.6, 8, -4.6, 2.4);
    path.cubicTo(-4.6, -1, -2, -3, 0, -8);
    fill(painter, dropColor);
    painter.drawPath(path);
}

/// Flies out of him in all directions, slows, and falls.
void drawConfetti(QPainter& painter, double burst) {
    if (burst <= 0 || burst >= 1) {
        return;
    }
    constexpr int pieces = 12;
    const double out = 0.3 + 0.7 * (1 - std::pow(1 - burst, 3));
    for (int i = 0; i < pieces; ++i) {
        const double angle = std::numbers::pi * (-0.06 + 1.12 * i / (pieces - 1));
        const double distance = (i % 3 == 1 ? 67 : i % 3 == 2 ? 52 : 61) * out;
        painter.save();
        painter.translate(distance * std::cos(angle), -52 - distance * 0.95 * std::sin(angle) + 36 * burst * burst);
        painter.rotate(40 * i + 260 * burst);
        QColor color = confetti[static_cast<std::size_t>(i) % confetti.size()];
        color.setAlphaF(static_cast<float>(std::min(1.0, 3.2 * (1 - burst))));
        fill(painter, color);
        painter.drawRoundedRect(QRectF{-3.4, -2, 6.8, 4}, 1.4, 1.4);
        painter.restore();
    }
}

void drawSnore(QPainter& painter, double snore) {
    if (snore <= 0 || snore >= 1) {
        return;
    }
    const double size = 3 + 4.5 * snore;
    QColor color = sheetLines;
    color.setAlphaF(static_cast<float>(std::sin(std::numbers::pi * snore)));
    painter.save();
    painter.translate(27 + 11 * snore + 3 * std::sin(6 * snore), -66 - 30 * snore);
    const std::array<QPointF, 4> letter{{{-size, -size}, {size, -size}, {-size, size}, {size, size}}};
    line(painter, color, 3);
    painter.drawPolyline(letter.data(), 4);
    painter.restore();
}

/// He and what he holds.
void drawFigure(QPainter& painter, const MascotPose& pose) {
    painter.save();
    painter.translate(pose.x, -pose.y);
    drawFeet(painter, pose);
    // He sways in the hips; his feet stay flat.
    painter.translate(0, -hips);
    painter.rotate(pose.angle);
    painter.translate(0, hips);
    painter.scale(1 / (1 + 0.8 * pose.stretch), 1 + pose.stretch);
    each(painter, {0, 1}, [&](double right) {
        drawWing(painter, right > 0 ? pose.wings.right : pose.wings.left,
                 right > 0 ? pose.raise.right : pose.raise.left);
    });
    painter.save();
    painter.translate(-2 * pose.turn, 0);
    each(painter, pose.ears, [&](double fold) { drawEar(painter, fold); });
    painter.restore();
    QLinearGradient shade{0, -72, 0, -4};
    shade.setColorAt(0.35, fur);
    shade.setColorAt(1, furShade);
    painter.setPen(Qt::NoPen);
    painter.setBrush(shade);
    painter.drawPath(bodyPath());
    drawFace(painter, pose);
    place(painter, pose.sheet, [&] { drawSheet(painter); });
    if (pose.wrap > 0.02) {
        drawWrap(painter, pose.wrap);
    }
    painter.restore();
}

} // namespace

void MascotPainter::paint(QPainter& painter, const MascotPose& pose, Stance stance) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    drawConfetti(painter, pose.burst);
    painter.save();
    if (stance == Stance::hanging) {
        painter.scale(1, -1);
    }
    drawFigure(painter, pose);
    painter.restore();
    place(painter, pose.alarm, [&] { drawAlarm(painter); });
    place(painter, pose.sweat, [&] { drawDrop(painter); });
    // Letters rise also where he hangs.
    if (stance == Stance::hanging) {
        painter.translate(10, 100);
    }
    drawSnore(painter, pose.snore);
    painter.restore();
}

} // namespace kippo
