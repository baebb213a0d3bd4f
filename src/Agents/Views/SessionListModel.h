#pragma once

#include "Agents/Views/SessionRow.h"

#include <QAbstractListModel>
#include <vector>

namespace kippo {

/// The sessions as rows. A new list reaches the view as insertions, removals, moves and changes of single roles, never
/// as a reset, so that rows keep their place, their hover and their scroll position.
class SessionListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Comes with AgentsViewModel")

public:
    enum Role {
        sessionIdRole = Qt::UserRole + 1,
        kindRole,
        statusRole,
        titleRole,
        projectRole,
        sentenceRole,
        requestRole,
        timelineRole,
        memoryRole,
        cpuRole,
        portsRole,
        spokenRole,
    };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Becomes `rows`, in that order. Of rows with the same id the first counts.
    void show(std::vector<SessionRow> rows);

private:
    void removeMissing(const std::vector<SessionRow>& wanted);
    void place(std::size_t row, SessionRow wanted);
    void update(std::size_t row, SessionRow wanted);

    std::vector<SessionRow> rows_;
};

} // namespace kippo
