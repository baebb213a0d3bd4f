#pragma once

#include <QImage>
#include <QPainter>

namespace kippo {

/// Whether `paint` touches anything of a picture of that size outside of `place`.
template <typename Paint> bool paintsOutside(QSize size, QRect place, const Paint& paint) {
    QImage image{size, QImage::Format_RGB32};
    image.fill(Qt::black);
    const QImage nothing = image.copy();
    QPainter painter{&image};
    painter.save();
    paint(painter);
    painter.restore();
    painter.fillRect(place, Qt::black);
    painter.end();
    return image != nothing;
}

} // namespace kippo
