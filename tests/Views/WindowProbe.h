#pragma once

#include <QAccessible>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <gtest/gtest.h>

namespace kippo {

/// Looks at a window as a person does, and presses what it finds there.
struct WindowProbe {
    /// `shown` tells the window; null while it is closed.
    explicit WindowProbe(std::function<QQuickView*()> shown) : view(std::move(shown)) {
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            // Offscreen there is nothing to be raised above.
            EXPECT_TRUE(type == QtDebugMsg || type == QtInfoMsg || text.contains(u"raise()")) << qPrintable(text);
        });
    }
    ~WindowProbe() { qInstallMessageHandler(nullptr); }
    WindowProbe(const WindowProbe&) = delete;
    WindowProbe& operator=(const WindowProbe&) = delete;

    std::function<QQuickView*()> view;

    template <typename Visit> static void visit(QQuickItem* item, const Visit& visitor) {
        if (item->isVisible()) {
            visitor(*item);
            for (QQuickItem* child : item->childItems()) {
                visit(child, visitor);
            }
        }
    }
    /// What a screen reader calls the item.
    static QString spokenName(QQuickItem& item) {
        QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(&item);
        return face ? face->text(QAccessible::Name) : QString{};
    }
    /// The item of this name that is drawn last, and so lies on top.
    QQuickItem* named(const QString& name) const {
        QQuickItem* found = nullptr;
        visit(view()->contentItem(), [&](QQuickItem& item) {
            found = item.property("spoken") == name || item.property("title") == name ? &item : found;
        });
        return found;
    }
    bool shows(const QString& text) const {
        bool found = false;
        visit(view()->contentItem(), [&](QQuickItem& item) {
            found = found || (item.inherits("QQuickText") && item.property("text").toString().contains(text));
        });
        return found;
    }
    /// The names of controls that a screen reader could not tell; each by its class.
    QStringList unnamedControls() const {
        QStringList found;
        visit(view()->contentItem(), [&](QQuickItem& item) {
            if ((item.inherits("QQuickAbstractButton") || item.inherits("QQuickSpinBox") ||
                 item.inherits("QQuickTextField")) &&
                item.isEnabled() && spokenName(item).isEmpty()) {
                found.append(QString::fromLatin1(item.metaObject()->className()));
            }
        });
        return found;
    }
    void click(const QString& name) const {
        QQuickItem* const item = named(name);
        ASSERT_TRUE(item) << qPrintable(name);
        const QPointF middle = item->mapToScene(QPointF{item->width() / 2, item->height() / 2});
        QTest::mouseClick(view(), Qt::LeftButton, {}, middle.toPoint());
        QTest::qWait(50);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
        QTest::keyClick(view(), key, modifiers);
        QTest::qWait(30);
    }
};

} // namespace kippo
