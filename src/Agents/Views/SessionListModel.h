#pragma once

#include "Agents/Views/SessionRow.h"
#include "Theme/KeyedListModel.h"

namespace kippo {

/// The sessions, one a row.
class SessionListModel : public KeyedListModel<SessionRow> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Comes with AgentsViewModel")

public:
    explicit SessionListModel(QObject* parent = nullptr);
};

} // namespace kippo
