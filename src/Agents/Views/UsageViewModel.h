#pragma once

#include "Agents/UsageScanner.h"
#include "Theme/KeyedListModel.h"

#include <QObject>
#include <QQmlEngine>

namespace kippo {

/// What a project used today.
struct ProjectUsageRow {
    QString id; ///< the folder's path
    QString name;
    QString tokens;
    QString cost;
    double share = 0; ///< of the highest project
    QString spoken;
};

/// One of the week's bars.
struct DayRow {
    QString id; ///< its place, from "0" six days ago to "6" today
    QString letter;
    QString amounts;  ///< "Tue: 2.1M tokens, $8.20"
    double share = 0; ///< of the highest day
    bool isToday = false;
};

/// What agents used, for QML: today, by project, the last five hours and the week's seven bars.
class UsageViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QString todayCost READ todayCost NOTIFY changed)
    Q_PROPERTY(QString todayTokens READ todayTokens NOTIFY changed)
    Q_PROPERTY(QString fiveHours READ fiveHours NOTIFY changed)
    Q_PROPERTY(QString weekText READ weekText NOTIFY changed)
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
    Q_PROPERTY(QAbstractListModel* projects READ projects CONSTANT)
    Q_PROPERTY(QAbstractListModel* week READ week CONSTANT)

public:
    explicit UsageViewModel(QObject* parent = nullptr);

    const QString& todayCost() const { return todayCost_; }
    /// Or that they are still being counted.
    const QString& todayTokens() const { return todayTokens_; }
    /// "1.1M tokens, $4.10 in the last 5 hours".
    const QString& fiveHours() const { return fiveHours_; }
    /// "$61.20 in 7 days".
    const QString& weekText() const { return weekText_; }
    /// What stands in place of projects when nothing was used; empty otherwise.
    const QString& statusText() const { return statusText_; }
    /// The day's projects, the dearest first.
    KeyedListModel<ProjectUsageRow>* projects() { return &projects_; }
    /// Seven bars, the last is today.
    KeyedListModel<DayRow>* week() { return &week_; }

    /// `isKnown` is false until the first scan has ended; `now` tells the days' names.
    void show(const UsageScanner::Report& report, bool isKnown, Date now);

signals:
    void changed();

private:
    void showWeek(const UsageScanner::Report& report, bool isKnown, Date now);
    void showProjects(const UsageScanner::Report& report);

    QString todayCost_;
    QString todayTokens_;
    QString fiveHours_;
    QString weekText_;
    QString statusText_;
    KeyedListModel<ProjectUsageRow> projects_;
    KeyedListModel<DayRow> week_;
};

} // namespace kippo
