#pragma once

#include "Focus/FocusStore.h"

#include <QObject>
#include <QQmlEngine>

namespace kippo {

/// The focus timer for QML: its texts, its dots, and what its buttons do. What changes every second is FocusClock's.
class FocusViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(kippo::FocusViewModel::Phase phase READ phase NOTIFY changed)
    Q_PROPERTY(bool isIdle READ isIdle NOTIFY changed)
    Q_PROPERTY(bool isBreak READ isBreak NOTIFY changed)
    Q_PROPERTY(bool isPaused READ isPaused NOTIFY changed)
    Q_PROPERTY(QString headline READ headline NOTIFY changed)
    Q_PROPERTY(QString subline READ subline NOTIFY changed)
    Q_PROPERTY(QString upNext READ upNext NOTIFY changed)
    Q_PROPERTY(QString note READ note NOTIFY changed)
    Q_PROPERTY(int rounds READ rounds CONSTANT)
    Q_PROPERTY(int roundsDone READ roundsDone NOTIFY changed)
    Q_PROPERTY(QString roundsSpoken READ roundsSpoken NOTIFY changed)
    Q_PROPERTY(int minutes READ minutes WRITE setMinutes NOTIFY changed)
    Q_PROPERTY(QList<int> presets READ presets CONSTANT)
    Q_PROPERTY(QString toggleText READ toggleText NOTIFY changed)
    Q_PROPERTY(QString toggleSpoken READ toggleSpoken NOTIFY changed)
    Q_PROPERTY(QString skipText READ skipText NOTIFY changed)
    Q_PROPERTY(QString skipHelp READ skipHelp NOTIFY changed)
    Q_PROPERTY(QString resetHelp READ resetHelp NOTIFY changed)

public:
    // NOLINTNEXTLINE(readability-identifier-naming): QML knows enumerators only by names that begin with a capital
    enum class Phase { Idle, Focus, ShortBreak, LongBreak };
    Q_ENUM(Phase)

    FocusViewModel(FocusStore& store, Scheduler& scheduler, UserDefaults& defaults, QObject* parent = nullptr);

    Phase phase() const { return static_cast<Phase>(store_.phase()); }
    bool isIdle() const { return store_.phase() == FocusStore::Phase::idle; }
    bool isBreak() const { return FocusStore::isBreak(store_.phase()); }
    bool isPaused() const { return store_.isPaused(); }
    QString headline() const;
    QString subline() const;
    QString upNext() const;
    /// What stands under the countdown: "until 14:35", "paused", or nothing while idle.
    QString note() const;
    /// The dots, and how many of them are full: the rounds of the current cycle that are done.
    static int rounds() { return FocusStore::rounds; }
    int roundsDone() const { return store_.roundsDone(); }
    /// "2 of 4 rounds done".
    QString roundsSpoken() const;
    /// The length of a focus, which the person may choose.
    int minutes() const { return store_.focusMinutes(); }
    void setMinutes(int minutes);
    static QList<int> presets() { return {15, 25, 45, 60}; }
    /// "Start 25 min", "Pause" or "Resume", and the same for a screen reader.
    QString toggleText() const;
    QString toggleSpoken() const;
    /// "Skip break", or for a focus "Finish round"; and what that does, and "Reset".
    QString skipText() const;
    QString skipHelp() const;
    QString resetHelp() const;

    Q_INVOKABLE void stepMinutes(int steps);
    Q_INVOKABLE void toggle() { store_.toggle(); }
    Q_INVOKABLE void skip() { store_.skip(); }
    Q_INVOKABLE void reset() { store_.reset(); }
    Q_INVOKABLE void startBreak() { store_.startBreak(); }

    const FocusStore& store() const { return store_; }
    Scheduler& scheduler() const { return scheduler_; }

signals:
    void changed();

private:
    FocusStore& store_;
    Scheduler& scheduler_;
    UserDefaults& defaults_;
    Subscription timerChanges_;
    Subscription settingChanges_;
};

} // namespace kippo
