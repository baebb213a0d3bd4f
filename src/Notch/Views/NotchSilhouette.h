#pragma once

#include "Notch/Views/NotchStage.h"

#include <QPointer>
#include <QQuickPaintedItem>

namespace kippo {

/// Paints the notch: black, with a faint edge of light below while it is open.
class NotchSilhouette : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(kippo::NotchStage* stage READ stage WRITE setStage NOTIFY stageChanged REQUIRED)

public:
    explicit NotchSilhouette(QQuickItem* parent = nullptr);

    NotchStage* stage() const { return stage_; }
    void setStage(NotchStage* stage);
    void paint(QPainter* painter) override;

signals:
    void stageChanged();

private:
    QPointer<NotchStage> stage_;
};

} // namespace kippo
