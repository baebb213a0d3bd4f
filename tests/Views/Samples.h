#pragma once

#include "Fakes/SampleSession.h"
#include "Fakes/UnchangedSettings.h"

#include <QAbstractListModel>

namespace kippo {

/// What each row has in `role`.
inline QStringList column(const QAbstractListModel& rows, const char* role) {
    QStringList values;
    for (int row = 0; row < rows.rowCount(); ++row) {
        values.append(rows.data(rows.index(row), rows.roleNames().key(role)).toString());
    }
    return values;
}

} // namespace kippo
