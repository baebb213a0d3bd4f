#pragma once

#include "Focus/Views/StretchViewModel.h"

#include <QColor>
#include <QQuickPaintedItem>
#include <QTimer>

namespace kippo {

/// The figure that shows the stretch. Drawn anew about 30 times a second while it moves and somebody sees it; where
/// less motion is wanted, only when it changes from one still picture to the next.
class StretchFigure : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(kippo::StretchViewModel* stretch READ stretch WRITE setStretch NOTIFY stretchChanged REQUIRED)
    Q_PROPERTY(bool reduced READ isReduced WRITE setReduced NOTIFY reducedChanged)

public:
    explicit StretchFigure(QQuickItem* parent = nullptr);

    StretchViewModel* stretch() const { return stretch_; }
    void setStretch(StretchViewModel* stretch);
    bool isReduced() const { return isReduced_; }
    void setReduced(bool reduced);
    bool isMoving() const { return timer_.isActive(); }
    void paint(QPainter* painter) override;

signals:
    void stretchChanged();
    void reducedChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    void follow();
    void show();

    StretchViewModel* stretch_ = nullptr;
    bool isReduced_ = false;
    FigurePose pose_;
    bool isFinished_ = false; ///< and the eyes have their turn
    QTimer timer_;
};

} // namespace kippo
