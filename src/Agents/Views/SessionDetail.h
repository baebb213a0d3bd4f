#pragma once

#include "Agents/AgentModels.h"
#include "Theme/KeyedListModel.h"

#include <QObject>
#include <QQmlEngine>

namespace kippo {

/// A process of a session as the expanded row shows it.
struct ProcessRow {
    QString id; ///< its pid
    QString name;
    QList<int> ports;
    QString morePorts;
    QString memory;
    QString cpu;
    QString spoken;
};

/// What an expanded row adds to a session's line, formatted. Texts are empty where there is nothing to say.
class SessionDetail : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Comes with AgentsViewModel")
    Q_PROPERTY(QString request MEMBER request_ NOTIFY changed)
    Q_PROPERTY(QString reply MEMBER reply_ NOTIFY changed)
    Q_PROPERTY(QString activityLabel MEMBER activityLabel_ NOTIFY changed)
    Q_PROPERTY(QString activity MEMBER activity_ NOTIFY changed)
    Q_PROPERTY(QString folder MEMBER folder_ NOTIFY changed)
    Q_PROPERTY(QString usage MEMBER usage_ NOTIFY changed)
    Q_PROPERTY(QList<int> ports MEMBER ports_ NOTIFY portsChanged)
    Q_PROPERTY(QString morePorts MEMBER morePorts_ NOTIFY changed)
    Q_PROPERTY(QAbstractListModel* processes READ processes CONSTANT)
    Q_PROPERTY(QString moreProcesses MEMBER moreProcesses_ NOTIFY changed)
    Q_PROPERTY(bool canBeStopped MEMBER canBeStopped_ NOTIFY changed)
    Q_PROPERTY(QString stopLabel MEMBER stopLabel_ NOTIFY changed)
    Q_PROPERTY(bool isAskingToStop MEMBER isAskingToStop_ NOTIFY changed)

public:
    /// The processes with ports, then those with the most memory, at most this many.
    static constexpr std::size_t mostProcesses = 6;
    static constexpr std::size_t mostPorts = 10;

    explicit SessionDetail(QObject* parent = nullptr);

    void show(const AgentSession& session);
    /// What its stop action is called, and whether the next click on it stops the process.
    void showStop(const QString& label, bool isAsking);

    KeyedListModel<ProcessRow>* processes() { return &processes_; }

signals:
    void changed();
    /// Apart from the rest, for it makes chips anew that the pointer may be on.
    void portsChanged();

private:
    void showActivity(const AgentSession& session);
    void showProcesses(const AgentSession& session);

    QString request_;
    QString reply_;
    QString activityLabel_; ///< "Now" or "Last"
    QString activity_;
    QString folder_;
    QString usage_;    ///< of today
    QList<int> ports_; ///< those that no shown process has
    QString morePorts_;
    QString moreProcesses_;
    bool canBeStopped_ = false;
    QString stopLabel_;
    bool isAskingToStop_ = false;
    KeyedListModel<ProcessRow> processes_;
};

/// "1.2M tokens, $3.40"; empty for nothing.
QString usageText(std::int64_t tokens, double cost);
/// The first `most` of the ports, and into `more` how many others there are, as "+3".
QList<int> firstPorts(const std::vector<int>& ports, std::size_t most, QString& more);

} // namespace kippo
