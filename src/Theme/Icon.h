#pragma once

#include <QColor>
#include <QQmlEngine>
#include <QQuickPaintedItem>

namespace kippo {

/// A small line drawing of our own, crisp at every scale.
class Icon : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(kippo::Icon::Name name MEMBER name_ WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QColor color MEMBER color_ WRITE setColor NOTIFY colorChanged)

public:
    // QML knows enumerators only by names that begin with a capital.
    // NOLINTBEGIN(readability-identifier-naming)
    enum Name {
        Gear,
        Sliders,
        Notch,
        Agents,
        Chevron,
        Cross,
        Tick,
        Warning,
        Bell,
        Clock,
        Info,
        Play,
        Plus,
        Minus,
        Focus,
        Pin,
        List,
        Bars,
        Box
    };
    // NOLINTEND(readability-identifier-naming)
    Q_ENUM(Name)

    explicit Icon(QQuickItem* parent = nullptr);

    void setName(Name name);
    void setColor(const QColor& color);
    void paint(QPainter* painter) override;

signals:
    void nameChanged();
    void colorChanged();

private:
    Name name_ = Gear;
    QColor color_ = Qt::white;
};

} // namespace kippo
