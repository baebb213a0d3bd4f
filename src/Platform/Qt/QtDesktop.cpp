#include "Platform/Qt/QtDesktop.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QUrl>

namespace kippo {

void QtDesktop::openFolder(const std::string& path) {
    const QString folder = QString::fromStdString(path);
    if (const QFileInfo info{folder}; info.isAbsolute() && info.isDir()) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
    }
}

void QtDesktop::copy(const std::string& text) { QGuiApplication::clipboard()->setText(QString::fromStdString(text)); }

} // namespace kippo
