#pragma once

#include "Agents/AgentModels.h"

#include <QQmlEngine>

namespace kippo {

/// The agents' enumerations under names that QML can use; the values are those of `AgentKind` and `AgentStatus::Case`.
namespace AgentLook {
Q_NAMESPACE
QML_ELEMENT

// QML knows enumerators only by names that begin with a capital.
// NOLINTBEGIN(readability-identifier-naming)
enum class Status { NeedsYou, Working, Done, Idle };
Q_ENUM_NS(Status)

enum class Kind { Claude, Codex, Cursor, Gemini, Opencode, Aider, ClaudeDesktop, Custom };
Q_ENUM_NS(Kind)
// NOLINTEND(readability-identifier-naming)

constexpr Status look(AgentStatus::Case status) { return static_cast<Status>(status); }
constexpr Kind look(AgentKind kind) { return static_cast<Kind>(kind); }
static_assert(look(AgentStatus::Case::idle) == Status::Idle && look(AgentStatus::Case::done) == Status::Done);
static_assert(look(AgentKind::custom) == Kind::Custom && look(AgentKind::gemini) == Kind::Gemini);

} // namespace AgentLook

} // namespace kippo
