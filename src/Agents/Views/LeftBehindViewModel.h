#pragma once

#include "Agents/Views/StopConfirmation.h"
#include "Theme/KeyedListModel.h"

#include <QObject>
#include <QQmlEngine>
#include <functional>
#include <optional>
#include <set>
#include <span>

namespace kippo {

/// A process that was left running, as the page shows it.
struct LeftRunningRow {
    QString id; ///< its pid
    int pid = 0;
    QString name;
    QString folder;
    QList<int> ports;
    QString morePorts;
    QString age;
    QString memory;
    QString stopLabel;
    bool isAsking = false;
    bool isStopping = false;
    QString spoken;
};

/// A leftover folder, as the page shows it.
struct LeftoverRow {
    QString id; ///< its path
    QString name;
    QString project;
    QString size;
    bool isMoving = false;
    QString spoken;
};

/// What agents left behind, for QML: processes that still run, and folders that can be built again.
class LeftBehindViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QAbstractListModel* processes READ processes CONSTANT)
    Q_PROPERTY(QString processesText READ processesText NOTIFY changed)
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    Q_PROPERTY(QString stopAllLabel READ stopAllLabel NOTIFY changed)
    Q_PROPERTY(bool isAskingToStopAll READ isAskingToStopAll NOTIFY changed)
    Q_PROPERTY(QAbstractListModel* leftovers READ leftovers CONSTANT)
    Q_PROPERTY(QString leftoversText READ leftoversText NOTIFY changed)
    Q_PROPERTY(QString scanLabel READ scanLabel NOTIFY changed)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY changed)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY changed)
    Q_PROPERTY(QString undoText READ undoText NOTIFY changed)
    Q_PROPERTY(QString errorText READ errorText NOTIFY changed)

public:
    /// What is known about leftovers.
    struct Leftovers {
        std::vector<Leftover> found{};
        bool isScanning = false;
        bool hasScanned = false;               ///< until then an empty list means nothing
        std::optional<Leftover> lastTrashed{}; ///< can be put back
        std::optional<std::string> trashError{};
    };

    explicit LeftBehindViewModel(Scheduler& scheduler, QObject* parent = nullptr);

    /// What the actions do; set by the application.
    std::function<void(Pid)> onStop;
    std::function<void()> onStopAll;
    std::function<void(const std::string& name)> onHide;
    std::function<void(const std::string& address)> onOpenAddress;
    std::function<void()> onScan;
    std::function<void(const Leftover&)> onTrash;
    std::function<void()> onUndoTrash;

    /// Two clicks each; see StopConfirmation.
    Q_INVOKABLE void stop(int pid) { stopping_.click(pid); }
    Q_INVOKABLE void stopAll() { stopping_.click(StopConfirmation::everything); }
    /// Leaves this process, and all of its name, out of the list.
    Q_INVOKABLE void hide(int pid) const;
    Q_INVOKABLE void hideAll() const;
    Q_INVOKABLE void openPort(int port) const;
    Q_INVOKABLE void scan() const;
    Q_INVOKABLE void trash(const QString& path);
    Q_INVOKABLE void undoTrash() const;

    KeyedListModel<LeftRunningRow>* processes() { return &processes_; }
    /// "3 processes, 412 MB"; empty for none.
    const QString& processesText() const { return processesText_; }
    /// How many processes, as "3"; empty for none.
    QString countText() const;
    QString stopAllLabel() const;
    bool isAskingToStopAll() const;
    KeyedListModel<LeftoverRow>* leftovers() { return &leftovers_; }
    /// "4 folders, 2.1 GB"; empty for none.
    const QString& leftoversText() const { return leftoversText_; }
    QString scanLabel() const;
    bool isScanning() const { return known_.isScanning; }
    /// What stands in place of leftovers; empty while there are some.
    QString emptyText() const;
    /// What was moved last and can be put back; empty for nothing.
    QString undoText() const;
    QString errorText() const;

    void show(std::span<const DetachedProcess> processes);
    void showLeftovers(Leftovers leftovers);
    /// The panel was closed, or the page left.
    void rest() { stopping_.withdraw(); }

signals:
    void changed();

private:
    void formatProcesses();
    void formatLeftovers();

    std::vector<DetachedProcess> current_;
    StopConfirmation stopping_;
    KeyedListModel<LeftRunningRow> processes_;
    QString processesText_;
    Leftovers known_;
    std::set<std::string> moving_; ///< paths on their way to the Trash
    KeyedListModel<LeftoverRow> leftovers_;
    QString leftoversText_;
};

} // namespace kippo
