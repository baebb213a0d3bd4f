#pragma once

#include "Agents/HookInstallation.h"

#include <QAbstractListModel>
#include <QQmlEngine>
#include <expected>

namespace kippo {

/// What connecting or disconnecting would do to an agent's file: the difference, line by line.
class PlannedChange : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Comes with AgentSettingsViewModel")
    /// What the lines say as a whole, or why there are none.
    Q_PROPERTY(QString summary READ summary CONSTANT)
    Q_PROPERTY(QString file READ file CONSTANT)
    /// The agent's file cannot be edited, and `summary` says why.
    Q_PROPERTY(bool isImpossible READ isImpossible CONSTANT)
    Q_PROPERTY(bool isNeeded READ isNeeded CONSTANT)

public:
    enum Role { markRole = Qt::UserRole + 1, lineRole };

    PlannedChange(const std::expected<HookBridge::Change, HookBridge::InstallError>& planned, const QString& file);

    const QString& summary() const { return summary_; }
    const QString& file() const { return file_; }
    bool isImpossible() const { return isImpossible_; }
    bool isNeeded() const { return !lines_.empty(); }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    struct Line {
        QString mark; ///< "+", "-", "" for an unchanged line, "@" where lines are left out
        QString text;
    };

    QString summary_;
    QString file_;
    bool isImpossible_ = false;
    std::vector<Line> lines_;
};

} // namespace kippo
