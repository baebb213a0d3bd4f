#pragma once

#include <QAccessible>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <vector>

namespace kippo {

/// While it lives, a warning of Qt or of QML is a failure.
struct WarningsFail {
    WarningsFail() {
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            // Offscreen there is nothing to be raised above.
            EXPECT_TRUE(type == QtDebugMsg || type == QtInfoMsg || text.contains(u"raise()")) << qPrintable(text);
        });
    }
    ~WarningsFail() { qInstallMessageHandler(nullptr); }
    WarningsFail(const WarningsFail&) = delete;
    WarningsFail& operator=(const WarningsFail&) = delete;
};

/// The item and those in it that can be seen, each before what lies on it.
inline std::vector<QQuickItem*> shownItems(QQuickItem* item) {
    std::vector<QQuickItem*> all;
    if (item->isVisible() && item->opacity() > 0) {
        all.push_back(item);
        for (QQuickItem* child : item->childItems()) {
            const auto inside = shownItems(child);
            all.insert(all.end(), inside.begin(), inside.end());
        }
    }
    return all;
}

inline bool isText(const QQuickItem* item) {
    return item->inherits("QQuickText") && !item->property("text").toString().isEmpty();
}

inline QPoint middleOf(const QQuickItem* item) {
    return item->mapToScene({item->width() / 2, item->height() / 2}).toPoint();
}

/// Looks at a window as a person does, and presses what it finds there.
struct WindowProbe : WarningsFail {
    /// `shown` tells the window; null while it is closed.
    explicit WindowProbe(std::function<QQuickView*()> shown) : view(std::move(shown)) {}

    std::function<QQuickView*()> view;

    /// The item of this name that is drawn last, and so lies on top.
    QQuickItem* named(const QString& name) const {
        QQuickItem* found = nullptr;
        for (QQuickItem* item : shownItems(view()->contentItem())) {
            found = item->property("spoken") == name || item->property("title") == name ? item : found;
        }
        return found;
    }
    bool shows(const QString& text) const {
        return std::ranges::any_of(shownItems(view()->contentItem()), [&](const QQuickItem* item) {
            return isText(item) && item->property("text").toString().contains(text);
        });
    }
    /// The controls that a screen reader could not tell; each by its class.
    QStringList unnamedControls() const {
        QStringList found;
        for (QQuickItem* item : shownItems(view()->contentItem())) {
            const QAccessibleInterface* face = QAccessible::queryAccessibleInterface(item);
            if ((item->inherits("QQuickAbstractButton") || item->inherits("QQuickSpinBox") ||
                 item->inherits("QQuickTextField")) &&
                item->isEnabled() && !(face && !face->text(QAccessible::Name).isEmpty())) {
                found.append(QString::fromLatin1(item->metaObject()->className()));
            }
        }
        return found;
    }
    void click(const QString& name) const {
        const QQuickItem* item = named(name);
        ASSERT_TRUE(item) << qPrintable(name);
        QTest::mouseClick(view(), Qt::LeftButton, {}, middleOf(item));
        QTest::qWait(50);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
        QTest::keyClick(view(), key, modifiers);
        QTest::qWait(30);
    }
};

} // namespace kippo
