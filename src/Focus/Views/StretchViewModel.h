#pragma once

#include "Focus/Stretch.h"

#include <QObject>
#include <QQmlEngine>
#include <functional>

namespace kippo {

/// The stretch routine for QML: what is to be done, for how long still, and what the buttons do. It moves once a
/// second, and only while somebody sees it.
class StretchViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(bool isOn READ isOn NOTIFY changed)
    Q_PROPERTY(bool isFinished READ isFinished NOTIFY changed)
    Q_PROPERTY(int index READ index NOTIFY changed)
    Q_PROPERTY(int count READ count CONSTANT)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString nextText READ nextText NOTIFY changed)
    Q_PROPERTY(QString spoken READ spoken NOTIFY changed)
    Q_PROPERTY(QString side READ side NOTIFY ticked)
    Q_PROPERTY(double progress READ progress NOTIFY ticked)
    Q_PROPERTY(QString left READ left NOTIFY ticked)
    Q_PROPERTY(bool shown READ isShown WRITE setShown NOTIFY shownChanged)

public:
    StretchViewModel(StretchStore& store, Scheduler& scheduler, QObject* parent = nullptr);

    /// What the way into the routine does; set by the application, which sees to the break as well.
    std::function<void()> onBegin;
    Q_INVOKABLE void begin() const;
    Q_INVOKABLE void next() { store_.next(); }
    Q_INVOKABLE void previous() { store_.previous(); }
    Q_INVOKABLE void end() { store_.end(); }

    /// The routine runs, or its closing tip shows.
    bool isOn() const { return store_.index().has_value(); }
    bool isFinished() const { return store_.isFinished(); }
    /// Of the current stretch, from 0.
    int index() const { return store_.index().value_or(0); }
    static int count() { return static_cast<int>(StretchRoutine::poses.size()); }
    /// The stretch's name and what to do; at the end, that it is done and the tip for the eyes.
    QString title() const;
    QString text() const;
    /// "Next", "Finish" on the last stretch, and "Done" after it.
    QString nextText() const;
    /// "Stretch 2 of 5".
    QString spoken() const;
    /// "Left side" or "Right side"; empty for a stretch without sides.
    QString side() const;
    /// The part of the stretch that is over, 0 to 1, in whole seconds.
    double progress() const;
    /// "24 s".
    QString left() const;
    bool isShown() const { return isShown_; }
    void setShown(bool shown);

    /// How the figure stands now; in less motion it stands still for seconds.
    FigurePose figure(bool reduced) const;

signals:
    void changed();
    void shownChanged();
    void ticked();

private:
    const StretchPose* pose() const { return store_.isFinished() ? nullptr : store_.pose(); }
    Seconds elapsed() const;
    void tick();

    StretchStore& store_;
    Scheduler& scheduler_;
    bool isShown_ = false;
    Timer next_;
    Subscription subscription_;
};

} // namespace kippo
