#include "Focus/Views/FigurePainter.h"

#include <QColor>
#include <QLineF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace kippo {

namespace {

// One family of colours, so that the figure is nobody in particular.
constexpr QColor skin{0xe9, 0xf6, 0xf1};
constexpr QColor skinShade{0xb9, 0xdc, 0xd3};
constexpr QColor shirt{0x57, 0xbf, 0xac};
constexpr QColor sleeve{0x74, 0xd3, 0xc1};
constexpr QColor trousers{0x2f, 0x7d, 0x74};
constexpr QColor trousersShade{0x24, 0x62, 0x5c};
constexpr QColor hair{0x1d, 0x54, 0x50};
constexpr QColor features{0x2a, 0x55, 0x50};

// Lengths in parts of the figure's height as it stands; y grows upward, from the hips.
constexpr double pictureHeight = 0.84;
constexpr double floorBelowHips = 0.175;
constexpr double torso = 0.29;
constexpr double shoulderHalf = 0.098;
constexpr double waistHalf = 0.066;
constexpr double hipHalf = 0.078;
constexpr double neck = 0.062;
constexpr double upperArm = 0.16;
constexpr double forearm = 0.14;
constexpr double hand = 0.066;
constexpr double gap = 0.009;

double radians(double degrees) { return degrees * std::numbers::pi / 180; }

/// Where a stroke of `length` ends that leaves `from` at an angle against straight down, to the right above 0.
QPointF along(QPointF from, double angle, double length) {
    return from + QPointF{std::sin(radians(angle)), -std::cos(radians(angle))} * length;
}

void line(QPainter& painter, const QColor& color, double width) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen{color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
}

void fill(QPainter& painter, const QColor& color) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
}

/// The back: it bends over its length, and its end is leant the most.
struct Spine {
    double lean;

    double angleAt(double part) const { return lean * (0.45 + 0.8 * part); }
    QPointF at(double part) const {
        QPointF point;
        constexpr int steps = 8;
        for (int i = 0; i < steps; ++i) {
            const double angle = radians(angleAt(part * (i + 0.5) / steps));
            point += QPointF{std::sin(angle), std::cos(angle)} * (torso * part / steps);
        }
        return point;
    }
    /// Beside the back: `out` to the right, `up` along it.
    QPointF beside(double part, double out, double up = 0) const {
        const double angle = radians(angleAt(part));
        return at(part) + QPointF{std::cos(angle), -std::sin(angle)} * out +
               QPointF{std::sin(angle), std::cos(angle)} * up;
    }
};

struct Arm {
    QPointF shoulder;
    QPointF elbow;
    QPointF wrist;
    QPointF fingers;
};

/// `side` is -1 for the left and 1 for the right arm; angles as in FigurePose, and against the shoulders.
Arm armOf(const Spine& spine, const FigurePose& pose, double side) {
    const bool isLeft = side < 0;
    // At rest the hands lie on the knees.
    const double arms = isLeft ? pose.leftArm : pose.rightArm;
    const double rest = 1 - std::min(std::abs(arms) / 45, 1.0);
    const double upper = arms + 25 * rest;
    const double lower = upper + (isLeft ? pose.leftForearm : pose.rightForearm);
    const double palm = lower + (isLeft ? pose.leftWrist : pose.rightWrist);
    const double leant = -spine.angleAt(1);
    Arm arm;
    arm.shoulder = spine.beside(0.93, side * (shoulderHalf + pose.shoulderWidth), pose.shoulderLift);
    arm.elbow = along(arm.shoulder, side * upper + leant, upperArm);
    arm.wrist = along(arm.elbow, side * lower + leant, forearm);
    arm.fingers = along(arm.wrist, side * (palm - 36 * rest) + leant, hand);
    return arm;
}

/// Crossed: the left shin behind, the right one before it.
void drawLegs(QPainter& painter) {
    constexpr double leg = 0.078;
    const auto shin = [&painter](double side, const QColor& color) {
        QPainterPath path{{side * 0.222, -0.1}};
        path.cubicTo({side * 0.2, -0.137}, {side * 0.08, -0.137}, {side * -0.075, -0.132});
        line(painter, color, leg);
        painter.drawPath(path);
    };
    shin(-1, trousersShade);
    line(painter, trousers, leg);
    for (const double side : {-1.0, 1.0}) {
        QPainterPath thigh{{0, -0.06}};
        thigh.cubicTo({side * 0.1, -0.045}, {side * 0.2, -0.06}, {side * 0.222, -0.1});
        painter.drawPath(thigh);
    }
    fill(painter, trousers);
    painter.drawRoundedRect(QRectF{-0.16, -0.13, 0.32, 0.06}, 0.03, 0.03);
    shin(1, trousers);
    QPainterPath edge{{0.165, -0.094}};
    edge.cubicTo({0.08, -0.098}, {0, -0.0945}, {-0.075, -0.0915});
    edge.cubicTo({-0.1, -0.091}, {-0.117, -0.105}, {-0.118, -0.125});
    line(painter, Qt::black, gap);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.drawPath(edge);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    line(painter, skin, 0.042);
    painter.drawLine(QPointF{-0.112, -0.14}, QPointF{-0.148, -0.146});
}

void drawTorso(QPainter& painter, const Spine& spine, const Arm& left, const Arm& right) {
    QPainterPath path{spine.beside(0, -hipHalf)};
    path.quadTo(spine.beside(0.4, -waistHalf), left.shoulder);
    path.quadTo(spine.beside(1.05, 0, 0.01), right.shoulder);
    path.quadTo(spine.beside(0.4, waistHalf), spine.beside(0, hipHalf));
    path.quadTo(spine.beside(-0.12, 0), spine.beside(0, -hipHalf));
    fill(painter, shirt);
    painter.setPen(QPen{shirt, 0.05, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    painter.drawPath(path);
}

void drawHead(QPainter& painter, const Spine& spine, double tilt, FigurePainter::Eyes eyes) {
    const QPointF nape = spine.beside(1, 0, 0.005);
    painter.save();
    painter.translate(nape);
    painter.rotate(-spine.angleAt(1) - 0.35 * tilt);
    line(painter, skinShade, 0.05);
    painter.drawLine(QPointF{0, 0.008}, QPointF{0, neck * 0.7});
    painter.translate(0, neck * 0.6);
    painter.rotate(-0.65 * tilt);
    painter.translate(0, 0.062);
    fill(painter, hair);
    painter.drawEllipse(QPointF{0, 0.077}, 0.029, 0.027);
    painter.drawEllipse(QPointF{0, 0.014}, 0.068, 0.071);
    fill(painter, skin);
    QPainterPath face;
    face.moveTo(-0.058, 0.02);
    face.cubicTo(-0.03, 0.052, 0.02, 0.05, 0.058, 0.018);
    face.cubicTo(0.066, -0.04, 0.034, -0.068, 0, -0.068);
    face.cubicTo(-0.034, -0.068, -0.066, -0.04, -0.058, 0.02);
    painter.drawPath(face);
    line(painter, features, eyes == FigurePainter::Eyes::open ? 0.016 : 0.0085);
    for (const double side : {-1.0, 1.0}) {
        if (eyes == FigurePainter::Eyes::open) {
            painter.drawPoint(QPointF{side * 0.026, 0.0});
            continue;
        }
        QPainterPath eye{{side * 0.018, 0.002}};
        eye.quadTo({side * 0.027, -0.008}, {side * 0.036, 0.002});
        painter.drawPath(eye);
    }
    line(painter, features, 0.0085);
    QPainterPath smile{{-0.015, -0.033}};
    smile.quadTo({0, -0.045}, {0.015, -0.033});
    painter.drawPath(smile);
    painter.restore();
}

/// A stroke that grows thinner towards its end.
void taper(QPainter& painter, const QColor& color, QPointF from, QPointF to, double fromWidth, double toWidth) {
    const QLineF axis{from, to};
    const QPointF normal = QPointF{axis.dy(), -axis.dx()} / std::max(axis.length(), 1e-6);
    QPainterPath path{from + normal * (fromWidth / 2)};
    path.lineTo(to + normal * (toWidth / 2));
    path.lineTo(to - normal * (toWidth / 2));
    path.lineTo(from - normal * (fromWidth / 2));
    path.closeSubpath();
    fill(painter, color);
    painter.drawPath(path);
    painter.drawEllipse(from, fromWidth / 2, fromWidth / 2);
    painter.drawEllipse(to, toWidth / 2, toWidth / 2);
}

/// With a gap round it, as wide everywhere: so it reads before the body and before the other arm.
void drawArm(QPainter& painter, const Arm& arm) {
    const auto draw = [&](const QColor& cloth, const QColor& bare, double more) {
        taper(painter, bare, arm.elbow, arm.wrist, 0.05 + more, 0.038 + more);
        taper(painter, bare, arm.wrist, arm.fingers, 0.042 + more, 0.034 + more);
        taper(painter, cloth, arm.shoulder, arm.elbow, 0.062 + more, 0.058 + more);
    };
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    draw(Qt::black, Qt::black, 2 * gap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    draw(sleeve, skin, 0);
}

} // namespace

void FigurePainter::paint(QPainter& painter, const FigurePose& pose, Eyes eyes) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(1 / pictureHeight, -1 / pictureHeight);
    painter.translate(0, floorBelowHips);
    const Spine spine{pose.torsoLean};
    const Arm left = armOf(spine, pose, -1);
    const Arm right = armOf(spine, pose, 1);
    drawTorso(painter, spine, left, right);
    drawLegs(painter);
    drawHead(painter, spine, pose.headTilt, eyes);
    // An arm across the chest lies below the one that helps it.
    const bool leftHelps = pose.rightArm < pose.leftArm;
    drawArm(painter, leftHelps ? right : left);
    drawArm(painter, leftHelps ? left : right);
    painter.restore();
}

} // namespace kippo
