#pragma once

#include "Platform/Posix/Descriptor.h"
#include "Support/SingleInstance.h"

#include <QDBusConnection>
#include <QDBusVirtualObject>

namespace kippo {

/// One Kippo on a message bus: the one that has the name "io.github.kippo.Kippo" there. It answers to
/// org.freedesktop.Application and to an interface of its own, which docs/desktop.md describes. The bus takes the name
/// back when its owner ends in whatever way. Where there is no bus, a locked file in XDG_RUNTIME_DIR keeps a second one
/// from starting; where that cannot be either, each start is the one.
class DBusInstance final : public QDBusVirtualObject, public SingleInstance {
public:
    explicit DBusInstance(QDBusConnection bus);
    ~DBusInstance() override;

    [[nodiscard]] bool claim() override;

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    using Answer = std::expected<QVariantList, std::string>;

    bool lockFile();
    /// Asks the one that runs to show its settings.
    void wakeTheOther();
    Answer openSettings(const QString& page) const;
    Answer openPage(const QString& page) const;
    Answer runFocus(const QString& command, int minutes) const;
    /// What is asked of every application; nothing for what is not.
    std::optional<Answer> asApplication(const QDBusMessage& message) const;
    std::optional<Answer> asKippo(const QDBusMessage& message) const;

    QDBusConnection bus_;
    Descriptor lock_;
};

} // namespace kippo
