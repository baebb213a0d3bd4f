#pragma once

#include <QAbstractListModel>
#include <algorithm>
#include <iterator>
#include <span>
#include <vector>

namespace kippo {

/// Rows that know themselves by their member `id`. A new list reaches the view as insertions, removals, moves and
/// changes of single roles, never as a reset, so that rows keep their place, their focus and what is open in them.
template <typename Row> class KeyedListModel : public QAbstractListModel {
public:
    struct Role {
        const char* name;
        QVariant (*value)(const Row&);
    };

    /// `roles` outlive the model. The first one is `Qt::UserRole + 1`.
    explicit KeyedListModel(std::span<const Role> roles, QObject* parent = nullptr)
        : QAbstractListModel(parent), roles_(roles) {}

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        const int wanted = role - firstRole;
        if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid) || wanted < 0 ||
            wanted >= static_cast<int>(roles_.size())) {
            return {};
        }
        return roles_[static_cast<std::size_t>(wanted)].value(rows_[static_cast<std::size_t>(index.row())]);
    }
    QHash<int, QByteArray> roleNames() const override {
        QHash<int, QByteArray> names;
        for (std::size_t i = 0; i < roles_.size(); ++i) {
            names.insert(firstRole + static_cast<int>(i), roles_[i].name);
        }
        return names;
    }

    const std::vector<Row>& rows() const { return rows_; }

    /// Becomes `rows`, in that order. Of rows with the same id the first counts.
    void show(std::vector<Row> rows) {
        std::vector<Row> wanted;
        for (Row& row : rows) {
            if (std::ranges::find(wanted, row.id, &Row::id) == wanted.end()) {
                wanted.push_back(std::move(row));
            }
        }
        removeMissing(wanted);
        for (std::size_t row = 0; row < wanted.size(); ++row) {
            place(row, std::move(wanted[row]));
        }
    }

private:
    static constexpr int firstRole = Qt::UserRole + 1;

    void removeMissing(const std::vector<Row>& wanted) {
        for (std::size_t row = rows_.size(); row-- > 0;) {
            if (std::ranges::find(wanted, rows_[row].id, &Row::id) == wanted.end()) {
                beginRemoveRows({}, static_cast<int>(row), static_cast<int>(row));
                rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(row));
                endRemoveRows();
            }
        }
    }

    /// Brings `wanted` to `row`; the rows before it are already as wanted.
    void place(std::size_t row, Row wanted) {
        const auto first = rows_.begin() + static_cast<std::ptrdiff_t>(row);
        const auto found = std::ranges::find(first, rows_.end(), wanted.id, &Row::id);
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

    void update(std::size_t row, Row wanted) {
        QList<int> changed;
        for (std::size_t i = 0; i < roles_.size(); ++i) {
            if (roles_[i].value(rows_[row]) != roles_[i].value(wanted)) {
                changed.append(firstRole + static_cast<int>(i));
            }
        }
        rows_[row] = std::move(wanted);
        if (!changed.isEmpty()) {
            const QModelIndex cell = this->index(static_cast<int>(row));
            emit this->dataChanged(cell, cell, changed);
        }
    }

    std::span<const Role> roles_;
    std::vector<Row> rows_;
};

} // namespace kippo
