#pragma once

#include <QColor>
#include <QQmlEngine>
#include <QQuickPaintedItem>

namespace kippo {

/// A ring that empties clockwise, from the top, as time passes.
class CountdownRing : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// The part of the time that is over, 0 to 1.
    Q_PROPERTY(double progress MEMBER progress_ WRITE setProgress NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER color_ WRITE setColor NOTIFY changed)
    Q_PROPERTY(QColor track MEMBER track_ WRITE setTrack NOTIFY changed)
    Q_PROPERTY(double thickness MEMBER thickness_ WRITE setThickness NOTIFY changed)

public:
    explicit CountdownRing(QQuickItem* parent = nullptr);

    void setProgress(double progress) { change(progress_, progress); }
    void setColor(const QColor& color) { change(color_, color); }
    void setTrack(const QColor& track) { change(track_, track); }
    void setThickness(double thickness) { change(thickness_, thickness); }
    void paint(QPainter* painter) override;

signals:
    void changed();

private:
    template <typename T> void change(T& field, const T& value) {
        if (field != value) {
            field = value;
            update();
            emit changed();
        }
    }

    double progress_ = 0;
    QColor color_ = Qt::white;
    QColor track_ = Qt::darkGray;
    double thickness_ = 6;
};

} // namespace kippo
