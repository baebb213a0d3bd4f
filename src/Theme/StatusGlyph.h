#pragma once

#include "Theme/AgentLook.h"

#include <QColor>
#include <QQuickPaintedItem>

namespace kippo {

/// A session's status as a light whose shape says as much as its colour: a diamond needs you, a disc works, a tick is
/// done, a ring is idle. Painted rather than composed, so that it is crisp at every scale without a graphics card.
class StatusGlyph : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(kippo::AgentLook::Status status MEMBER status_ WRITE setStatus NOTIFY statusChanged)
    Q_PROPERTY(QColor color MEMBER color_ WRITE setColor NOTIFY colorChanged)

public:
    explicit StatusGlyph(QQuickItem* parent = nullptr);

    void setStatus(AgentLook::Status status);
    void setColor(const QColor& color);
    void paint(QPainter* painter) override;

signals:
    void statusChanged();
    void colorChanged();

private:
    AgentLook::Status status_ = AgentLook::Status::Idle;
    QColor color_ = Qt::white;
};

} // namespace kippo
