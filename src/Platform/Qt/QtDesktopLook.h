#pragma once

#include "Support/DesktopLook.h"

#include <QDBusVariant>
#include <QObject>
#include <optional>

namespace kippo {

/// The look as the desktop portal tells it, or, where none answers or it has no preference, as Qt's palette has it.
class QtDesktopLook final : public QObject, public DesktopLook {
    Q_OBJECT

public:
    QtDesktopLook();

    bool isDark() const override { return isDark_; }
    std::optional<std::uint32_t> accent() const override { return accent_; }
    bool reducesMotion() const override { return reducesMotion_ || isStill_; }
    [[nodiscard]] Subscription observe(std::function<void()> callback) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void askPortal(const char* group, const char* key);
    void take(const QString& group, const QString& key, const QVariant& value);
    template <typename T> void keep(T& known, T value);
    void update();

    std::optional<unsigned> scheme_; ///< the portal's "color-scheme": 0 no preference, 1 dark, 2 light
    std::optional<std::uint32_t> accent_;
    bool isDark_ = false;
    bool reducesMotion_ = false; ///< the portal's "reduced-motion"
    bool isStill_ = false;       ///< GNOME's "enable-animations" is off
    Observers observers_;
};

} // namespace kippo
