#pragma once

#include "Support/Desktop.h"

#include <QObject>
#include <QQmlEngine>
#include <functional>
#include <string>

namespace kippo {

/// Something that Kippo stands on, for QML.
struct ComponentLine {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString purpose MEMBER purpose CONSTANT)
    Q_PROPERTY(QString licence MEMBER licence CONSTANT)

public:
    QString name;
    QString purpose;
    QString licence;
};

/// How a problem reaches those who can solve it.
struct ReportActions {
    std::function<std::string()> text; ///< what would be sent as it stands now, several lines
    std::function<std::string()> send; ///< hands it to the person's mail program; why not, or nothing
};

/// Which Kippo this is, and what to do when it does something wrong.
class AboutViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QString version READ version CONSTANT)
    /// Each is a ComponentLine.
    Q_PROPERTY(QVariantList components READ components CONSTANT)
    /// Why the last report could not be sent; empty when all is well.
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)

public:
    AboutViewModel(std::string_view version, ReportActions report, Desktop& desktop, QObject* parent = nullptr);

    const QString& version() const { return version_; }
    static QVariantList components();
    const QString& problem() const { return problem_; }

    /// What a report would say.
    Q_INVOKABLE QString reportText() const;
    /// Hands the report to the mail program; false when that did not come about, and `problem` says why.
    Q_INVOKABLE bool sendReport();
    /// Puts the report on the clipboard.
    Q_INVOKABLE void copyReport();
    Q_INVOKABLE void clearProblem();

signals:
    void problemChanged();

private:
    void setProblem(const QString& problem);

    QString version_;
    ReportActions report_;
    Desktop& desktop_;
    QString problem_;
};

} // namespace kippo
