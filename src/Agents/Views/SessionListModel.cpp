#include "Agents/Views/SessionListModel.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace kippo {

namespace {

struct RoleRow {
    SessionListModel::Role role;
    const char* name;
    QVariant (*value)(const SessionRow&);
};

constexpr std::array roles{
    RoleRow{SessionListModel::sessionIdRole, "sessionId", [](const SessionRow& row) { return QVariant{row.id}; }},
    RoleRow{SessionListModel::kindRole, "kind", [](const SessionRow& row) { return QVariant::fromValue(row.kind); }},
    RoleRow{SessionListModel::statusRole, "status",
            [](const SessionRow& row) { return QVariant::fromValue(row.status); }},
    RoleRow{SessionListModel::titleRole, "title", [](const SessionRow& row) { return QVariant{row.title}; }},
    RoleRow{SessionListModel::projectRole, "project", [](const SessionRow& row) { return QVariant{row.project}; }},
    RoleRow{SessionListModel::sentenceRole, "sentence", [](const SessionRow& row) { return QVariant{row.sentence}; }},
    RoleRow{SessionListModel::requestRole, "request", [](const SessionRow& row) { return QVariant{row.request}; }},
    RoleRow{SessionListModel::timelineRole, "timeline", [](const SessionRow& row) { return QVariant{row.timeline}; }},
    RoleRow{SessionListModel::memoryRole, "memory", [](const SessionRow& row) { return QVariant{row.memory}; }},
    RoleRow{SessionListModel::cpuRole, "cpu", [](const SessionRow& row) { return QVariant{row.cpu}; }},
    RoleRow{SessionListModel::portsRole, "ports", [](const SessionRow& row) { return QVariant{row.ports}; }},
    RoleRow{SessionListModel::spokenRole, "spoken", [](const SessionRow& row) { return QVariant{row.spoken}; }},
};

} // namespace

int SessionListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant SessionListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const auto found = std::ranges::find(roles, role, [](const RoleRow& row) { return int{row.role}; });
    return found == roles.end() ? QVariant{} : found->value(rows_[static_cast<std::size_t>(index.row())]);
}

QHash<int, QByteArray> SessionListModel::roleNames() const {
    QHash<int, QByteArray> names;
    for (const RoleRow& row : roles) {
        names.insert(row.role, row.name);
    }
    return names;
}

void SessionListModel::show(std::vector<SessionRow> rows) {
    std::vector<SessionRow> wanted;
    for (SessionRow& row : rows) {
        if (std::ranges::find(wanted, row.id, &SessionRow::id) == wanted.end()) {
            wanted.push_back(std::move(row));
        }
    }
    removeMissing(wanted);
    for (std::size_t row = 0; row < wanted.size(); ++row) {
        place(row, std::move(wanted[row]));
    }
}

void SessionListModel::removeMissing(const std::vector<SessionRow>& wanted) {
    for (std::size_t row = rows_.size(); row-- > 0;) {
        if (std::ranges::find(wanted, rows_[row].id, &SessionRow::id) == wanted.end()) {
            beginRemoveRows({}, static_cast<int>(row), static_cast<int>(row));
            rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(row));
            endRemoveRows();
        }
    }
}

/// Brings `wanted` to `row`; the rows before it are already as wanted.
void SessionListModel::place(std::size_t row, SessionRow wanted) {
    const auto first = rows_.begin() + static_cast<std::ptrdiff_t>(row);
    const auto found = std::ranges::find(first, rows_.end(), wanted.id, &SessionRow::id);
    const int target = static_cast<int>(row);
    if (found == rows_.end()) {
        beginInsertRows({}, target, target);
        rows_.insert(first, std::move(wanted));
        endInsertRows();
        return;
    }
    if (found != first) {
        const int source = static_cast<int>(found - rows_.begin());
        beginMoveRows({}, source, source, {}, target);
        std::rotate(first, found, std::next(found));
        endMoveRows();
    }
    update(row, std::move(wanted));
}

void SessionListModel::update(std::size_t row, SessionRow wanted) {
    QList<int> changed;
    for (const RoleRow& role : roles) {
        if (role.value(rows_[row]) != role.value(wanted)) {
            changed.append(role.role);
        }
    }
    rows_[row] = std::move(wanted);
    if (!changed.isEmpty()) {
        const QModelIndex cell = index(static_cast<int>(row));
        emit dataChanged(cell, cell, changed);
    }
}

} // namespace kippo
