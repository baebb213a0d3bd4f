#pragma once

#include "Support/Scheduler.h"
#include "Support/UserDefaults.h"

#include <QObject>
#include <QQmlEngine>

namespace kippo {

/// The settings of the focus timer and of the mascot. Each write is stored at once; a change from elsewhere shows at
/// once.
class FocusSettingsViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(int focusMinutes READ focusMinutes WRITE setFocusMinutes NOTIFY changed)
    Q_PROPERTY(int shortBreakMinutes READ shortBreakMinutes WRITE setShortBreakMinutes NOTIFY changed)
    Q_PROPERTY(int longBreakMinutes READ longBreakMinutes WRITE setLongBreakMinutes NOTIFY changed)
    Q_PROPERTY(bool autoStartBreaks READ autoStartBreaks WRITE setAutoStartBreaks NOTIFY changed)
    Q_PROPERTY(bool mascotEnabled READ mascotEnabled WRITE setMascotEnabled NOTIFY changed)
    Q_PROPERTY(bool mascotRoams READ mascotRoams WRITE setMascotRoams NOTIFY changed)
    Q_PROPERTY(bool mascotNightOwl READ mascotNightOwl WRITE setMascotNightOwl NOTIFY changed)
    /// How long the mascot keeps quiet; empty when he may speak.
    Q_PROPERTY(QString quiet READ quiet NOTIFY changed)

public:
    FocusSettingsViewModel(UserDefaults& defaults, Scheduler& scheduler, QObject* parent = nullptr);

    int focusMinutes() const { return minutes("focusMinutes"); }
    void setFocusMinutes(int minutes) { setMinutes("focusMinutes", minutes); }
    int shortBreakMinutes() const { return minutes("shortBreakMinutes"); }
    void setShortBreakMinutes(int minutes) { setMinutes("shortBreakMinutes", minutes); }
    int longBreakMinutes() const { return minutes("longBreakMinutes"); }
    void setLongBreakMinutes(int minutes) { setMinutes("longBreakMinutes", minutes); }
    bool autoStartBreaks() const { return defaults_.get<bool>("autoStartBreaks"); }
    void setAutoStartBreaks(bool on) { defaults_.set("autoStartBreaks", on); }
    bool mascotEnabled() const { return defaults_.get<bool>("mascotEnabled"); }
    void setMascotEnabled(bool on) { defaults_.set("mascotEnabled", on); }
    bool mascotRoams() const { return defaults_.get<bool>("mascotRoams"); }
    void setMascotRoams(bool on) { defaults_.set("mascotRoams", on); }
    bool mascotNightOwl() const { return defaults_.get<bool>("mascotNightOwl"); }
    void setMascotNightOwl(bool on) { defaults_.set("mascotNightOwl", on); }
    QString quiet() const;

    /// "Quiet for the rest of today".
    Q_INVOKABLE void keepQuiet();
    Q_INVOKABLE void speakAgain();

signals:
    void changed();

private:
    int minutes(std::string_view key) const;
    void setMinutes(std::string_view key, int minutes);

    UserDefaults& defaults_;
    Scheduler& scheduler_;
    Timer clock_;
    Subscription subscription_;
};

} // namespace kippo
