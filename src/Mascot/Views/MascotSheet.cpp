#include "Mascot/Views/MascotSheet.h"

#include "Mascot/Views/MascotPainter.h"

#include <QFont>
#include <QPainter>
#include <array>
#include <vector>

namespace kippo {

namespace {

struct Row {
    const char* title;
    MascotState state;
    std::vector<double> times;
    MascotMessage::Mood mood = MascotMessage::Mood::curious;
    MascotPainter::Stance stance = MascotPainter::Stance::standing;
};

const std::vector<Row>& rows() {
    using Mood = MascotMessage::Mood;
    static const std::vector<Row> all{
        {"idle", MascotState::idle, {0, 1, 4.18, 16.8, 17.6, 31.0, 31.18}},
        {"walk", MascotState::walk, {0.12, 0.3, 0.46, 0.58, 0.7, 0.92, 1.04}},
        {"catch", MascotState::catching, {0.18, 0.36, 0.5, 0.66, 0.78, 1.1, 1.42}},
        {"cheer", MascotState::cheer, {0.19, 0.34, 0.5, 0.72, 0.94, 1.12, 1.5}},
        {"panic", MascotState::panic, {0.1, 0.24, 0.6, 0.8, 1.3, 1.95, 2.3}},
        {"sleep", MascotState::sleep, {0.5, 1.0, 1.75, 2.3, 2.9, 11.0, 12.0}},
        {"asleep in the wing",
         MascotState::sleep,
         {9, 10.6, 11.2, 11.8, 12.4, 9, 11.2},
         Mood::curious,
         MascotPainter::Stance::hanging},
        {"wake", MascotState::wake, {0.2, 0.5, 0.8, 0.97, 1.15, 1.3, 1.9}},
        {"talk, curious", MascotState::talk, {0, 0.16, 0.4, 0.6, 0.8, 1.1, 1.6}, Mood::curious},
        {"talk, excited", MascotState::talk, {0, 0.16, 0.4, 0.6, 0.8, 1.1, 1.6}, Mood::excited},
        {"talk, sleepy", MascotState::talk, {0, 0.16, 0.4, 0.6, 0.8, 1.1, 1.6}, Mood::sleepy},
    };
    return all;
}

constexpr std::array<int, 3> sizes{96, 48, 24};
constexpr int columns = 7;
constexpr int labelWidth = 128;
constexpr int rowHeight = 150;
constexpr QColor paper{0xf6, 0xf5, 0xf3};

constexpr int cellWidth(int size) { return size * 3 / 2; }

} // namespace

QImage mascotSheet() {
    int width = labelWidth;
    for (const int size : sizes) {
        width += columns * cellWidth(size);
    }
    const int height = static_cast<int>(rows().size()) * rowHeight;
    QImage sheet{width, height, QImage::Format_RGB32};
    sheet.fill(Qt::black);
    QPainter painter{&sheet};
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font{QStringLiteral("Inter")};
    font.setPixelSize(12);
    painter.setFont(font);
    int y = 0;
    for (const Row& row : rows()) {
        painter.setPen(QColor{0xb8, 0xb8, 0xbd});
        painter.drawText(QRect{16, y, labelWidth - 16, rowHeight}, Qt::AlignVCenter, QString::fromLatin1(row.title));
        int x = labelWidth;
        for (const int size : sizes) {
            for (int column = 0; column < columns; ++column) {
                // The last two columns lie on a light window.
                const QRect cell{x, y, cellWidth(size), rowHeight};
                if (column >= columns - 2) {
                    painter.fillRect(cell, paper);
                }
                painter.save();
                painter.translate(cell.center().x() + 0.5,
                                  row.stance == MascotPainter::Stance::hanging ? y + 10 : y + rowHeight - 10);
                painter.scale(size / 100.0, size / 100.0);
                const Seconds time{row.times[static_cast<std::size_t>(column)]};
                MascotPainter::paint(painter, MascotPose::at(row.state, time, row.mood), row.stance);
                painter.restore();
                x += cellWidth(size);
            }
        }
        y += rowHeight;
    }
    return sheet;
}

} // namespace kippo
