#pragma once

#include "Focus/Views/FocusViewModel.h"

namespace kippo {

/// The countdown of one view. It moves when the second that is shown changes, so that a view costs one frame a second,
/// and none while nobody sees it, or the timer stands.
class FocusClock : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(kippo::FocusViewModel* focus READ focus WRITE setFocus NOTIFY focusChanged REQUIRED)
    /// Whether somebody sees it.
    Q_PROPERTY(bool shown READ isShown WRITE setShown NOTIFY shownChanged)
    /// Stays as it was when the timer falls idle, for a view that then fades out.
    Q_PROPERTY(bool lingers MEMBER lingers_ NOTIFY lingersChanged)
    Q_PROPERTY(QString text READ text NOTIFY ticked)
    Q_PROPERTY(double progress READ progress NOTIFY ticked)
    Q_PROPERTY(kippo::FocusViewModel::Phase phase READ phase NOTIFY ticked)
    Q_PROPERTY(bool isPaused READ isPaused NOTIFY ticked)

public:
    using QObject::QObject;

    FocusViewModel* focus() const { return focus_; }
    void setFocus(FocusViewModel* focus);
    bool isShown() const { return isShown_; }
    void setShown(bool shown);
    /// "24:05".
    const QString& text() const { return text_; }
    /// The part of the phase that is over by the time that is shown, 0 to 1.
    double progress() const { return progress_; }
    FocusViewModel::Phase phase() const { return phase_; }
    bool isPaused() const { return isPaused_; }

signals:
    void focusChanged();
    void shownChanged();
    void lingersChanged();
    void ticked();

private:
    void read();

    FocusViewModel* focus_ = nullptr;
    bool isShown_ = false;
    bool lingers_ = false;
    QString text_;
    double progress_ = 0;
    FocusViewModel::Phase phase_ = FocusViewModel::Phase::Idle;
    bool isPaused_ = false;
    Timer next_;
};

} // namespace kippo
