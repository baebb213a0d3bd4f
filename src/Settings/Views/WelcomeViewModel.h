#pragma once

#include "Settings/Views/AgentSettingsViewModel.h"

#include <QSortFilterProxyModel>
#include <functional>
#include <set>

namespace kippo {

/// The welcome: which agents there are to connect, and its end.
class WelcomeViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// An item model: those on this machine that report through hooks; the roles of AgentSettingsModel.
    Q_PROPERTY(QObject* found READ found CONSTANT)
    Q_PROPERTY(int foundCount READ foundCount CONSTANT)
    /// How many of them are not connected.
    Q_PROPERTY(int unconnected READ unconnected NOTIFY changed)

public:
    /// `onMachine` are the agents on this machine. `agents` must outlive the welcome.
    WelcomeViewModel(AgentSettingsViewModel& agents, const std::set<HookAgent>& onMachine, QObject* parent = nullptr);

    QObject* found() { return &found_; }
    int foundCount() const { return found_.rowCount(); }
    int unconnected() const;

    Q_INVOKABLE void connectAll();
    /// The person has seen it through, or skips the rest.
    Q_INVOKABLE void finish();

    std::function<void()> onFinish;

signals:
    void changed();

private:
    /// Lets through the agents that are on this machine.
    class Found final : public QSortFilterProxyModel {
    public:
        explicit Found(std::set<QString> ids) : ids_(std::move(ids)) {}
        bool accepts(const QString& id) const { return ids_.contains(id); }

    protected:
        bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

    private:
        std::set<QString> ids_;
    };

    AgentSettingsViewModel& agents_;
    Found found_;
};

} // namespace kippo
