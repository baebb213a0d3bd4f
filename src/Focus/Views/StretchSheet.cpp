#include "Focus/Views/StretchSheet.h"

#include "Focus/Views/FigurePainter.h"

#include <QFont>
#include <QPainter>
#include <array>

namespace kippo {

namespace {

constexpr std::array<double, 4> moments{0, 7.5, 15, 22.5};
constexpr int labelWidth = 140;
constexpr int figureHeight = 150; // as on the page
constexpr int cellWidth = static_cast<int>(figureHeight * FigurePainter::width) + 10;
constexpr int rowHeight = figureHeight + 24;
constexpr int headHeight = 28;
constexpr double scale = 2;

} // namespace

QImage stretchSheet() {
    const auto& poses = StretchRoutine::poses;
    const QSize size{labelWidth + static_cast<int>(moments.size()) * cellWidth,
                     headHeight + static_cast<int>(poses.size()) * rowHeight};
    QImage sheet{size * scale, QImage::Format_RGB32};
    sheet.fill(Qt::black);
    QPainter painter{&sheet};
    painter.scale(scale, scale);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font{QStringLiteral("Inter")};
    font.setPixelSize(12);
    painter.setFont(font);
    painter.setPen(QColor{0xb8, 0xb8, 0xbd});
    int x = labelWidth;
    for (const double moment : moments) {
        painter.drawText(QRect{x, 0, cellWidth, headHeight}, Qt::AlignCenter, QStringLiteral("%1 s").arg(moment));
        x += cellWidth;
    }
    int y = headHeight;
    for (const StretchPose& pose : poses) {
        painter.drawText(QRect{16, y, labelWidth - 16, rowHeight}, Qt::AlignVCenter,
                         QString::fromUtf8(pose.name.data(), static_cast<qsizetype>(pose.name.size())));
        x = labelWidth;
        for (const double moment : moments) {
            painter.save();
            painter.translate(x + cellWidth / 2.0, y + rowHeight - 12);
            painter.scale(figureHeight, figureHeight);
            FigurePainter::paint(painter, pose.motion(Seconds{moment}));
            painter.restore();
            x += cellWidth;
        }
        y += rowHeight;
    }
    return sheet;
}

} // namespace kippo
