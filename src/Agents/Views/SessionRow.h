#pragma once

#include "Theme/AgentLook.h"

#include <QString>
#include <QStringList>

namespace kippo {

/// A session as a row shows it: every text formatted, nothing left to decide. Texts are empty where there is nothing to
/// say.
struct SessionRow {
    QString id;
    AgentLook::Kind kind = AgentLook::Kind::Custom;
    AgentLook::Status status = AgentLook::Status::Idle;
    QString title;
    QString project; ///< empty when it would repeat the title
    QString sentence;
    QString request; ///< the user's last request, unless the sentence already tells it
    QString timeline;
    QString memory;
    QString cpu;
    QStringList ports; ///< the first few, then how many more: ":3000", ":5173", "+2"
    QString spoken;    ///< the whole row as one sentence for a screen reader

    bool operator==(const SessionRow&) const = default;
};

/// `now` is for the timeline.
SessionRow sessionRow(const AgentSession& session, Date now);

} // namespace kippo
