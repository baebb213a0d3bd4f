#pragma once

#include "Theme/AgentLook.h"

#include <QQuickPaintedItem>

namespace kippo {

/// An agent's badge: a rounded square in the kind's tint with a plain glyph of our own.
class AgentBadge : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(kippo::AgentLook::Kind kind MEMBER kind_ WRITE setKind NOTIFY kindChanged)

public:
    explicit AgentBadge(QQuickItem* parent = nullptr);

    void setKind(AgentLook::Kind kind);
    void paint(QPainter* painter) override;

signals:
    void kindChanged();

private:
    AgentLook::Kind kind_ = AgentLook::Kind::Custom;
};

} // namespace kippo
