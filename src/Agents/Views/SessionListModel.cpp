#include "Agents/Views/SessionListModel.h"

#include <array>

namespace kippo {

namespace {

constexpr std::array roles{
    SessionListModel::Role{"sessionId", [](const SessionRow& row) { return QVariant{row.id}; }},
    SessionListModel::Role{"kind", [](const SessionRow& row) { return QVariant::fromValue(row.kind); }},
    SessionListModel::Role{"status", [](const SessionRow& row) { return QVariant::fromValue(row.status); }},
    SessionListModel::Role{"title", [](const SessionRow& row) { return QVariant{row.title}; }},
    SessionListModel::Role{"project", [](const SessionRow& row) { return QVariant{row.project}; }},
    SessionListModel::Role{"sentence", [](const SessionRow& row) { return QVariant{row.sentence}; }},
    SessionListModel::Role{"request", [](const SessionRow& row) { return QVariant{row.request}; }},
    SessionListModel::Role{"timeline", [](const SessionRow& row) { return QVariant{row.timeline}; }},
    SessionListModel::Role{"memory", [](const SessionRow& row) { return QVariant{row.memory}; }},
    SessionListModel::Role{"cpu", [](const SessionRow& row) { return QVariant{row.cpu}; }},
    SessionListModel::Role{"ports", [](const SessionRow& row) { return QVariant{row.ports}; }},
    SessionListModel::Role{"spoken", [](const SessionRow& row) { return QVariant{row.spoken}; }},
};

} // namespace

SessionListModel::SessionListModel(QObject* parent) : KeyedListModel(roles, parent) {}

} // namespace kippo
