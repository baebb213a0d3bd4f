#pragma once

#include "Notch/Views/NotchStage.h"

#include <QColor>
#include <QPointer>
#include <QQuickPaintedItem>

namespace kippo {

/// Paints the notch, with a faint edge of light below while it is open. Closed round a camera it is black whatever its
/// colour, so that it passes for a part of it.
class NotchSilhouette : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(kippo::NotchStage* stage READ stage WRITE setStage NOTIFY stageChanged REQUIRED)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(bool hasNotch READ hasNotch WRITE setHasNotch NOTIFY hasNotchChanged)

public:
    explicit NotchSilhouette(QQuickItem* parent = nullptr);

    NotchStage* stage() const { return stage_; }
    void setStage(NotchStage* stage);
    QColor color() const { return color_; }
    void setColor(const QColor& color);
    bool hasNotch() const { return hasNotch_; }
    void setHasNotch(bool hasNotch);
    void paint(QPainter* painter) override;

signals:
    void stageChanged();
    void colorChanged();
    void hasNotchChanged();

private:
    QColor ground() const;

    QColor color_ = Qt::black;
    bool hasNotch_ = false;
    QPointer<NotchStage> stage_;
};

} // namespace kippo
