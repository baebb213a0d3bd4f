#pragma once

#include "Mascot/MascotPose.h"

#include <QElapsedTimer>
#include <QQuickPaintedItem>
#include <QTimer>

namespace kippo {

/// The mascot in QML. He plays his state by his own clock and is drawn anew only while he moves: standing still, or out
/// of sight, he costs nothing. He stands on the item's lower edge, or hangs from its upper one.
class MascotItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(kippo::MascotItem::State state READ state WRITE setState NOTIFY stateChanged)
    Q_PROPERTY(kippo::MascotItem::Mood mood READ mood WRITE setMood NOTIFY moodChanged)
    /// His height in pixels; the item is half as large again, for what his performances need.
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY sizeChanged)
    Q_PROPERTY(bool facesLeft READ facesLeft WRITE setFacesLeft NOTIFY facesLeftChanged)
    Q_PROPERTY(bool hangs READ hangs WRITE setHangs NOTIFY hangsChanged)
    /// Less motion: each state is one still picture.
    Q_PROPERTY(bool reduced READ isReduced WRITE setReduced NOTIFY reducedChanged)
    Q_PROPERTY(bool moving READ isMoving NOTIFY movingChanged)

public:
    // QML knows enumerators only by names that begin with a capital.
    // NOLINTBEGIN(readability-identifier-naming)
    enum class State { Idle, Walk, Catching, Cheer, Panic, Sleep, Wake, Talk };
    Q_ENUM(State)
    enum class Mood { Curious, Excited, Sleepy };
    Q_ENUM(Mood)
    // NOLINTEND(readability-identifier-naming)

    explicit MascotItem(QQuickItem* parent = nullptr);

    State state() const { return state_; }
    Mood mood() const { return mood_; }
    double size() const { return size_; }
    bool facesLeft() const { return facesLeft_; }
    bool hangs() const { return hangs_; }
    bool isReduced() const { return isReduced_; }
    bool isMoving() const { return isMoving_; }

    void setState(State state);
    void setMood(Mood mood);
    void setSize(double size);
    void setFacesLeft(bool facesLeft);
    void setHangs(bool hangs);
    void setReduced(bool reduced);
    /// Begins the state anew, as one that began `age` seconds ago.
    Q_INVOKABLE void restart(double age = 0);
    /// Moves his clock on by `seconds`.
    void advance(double seconds);

    void paint(QPainter* painter) override;

signals:
    void stateChanged();
    void moodChanged();
    void sizeChanged();
    void facesLeftChanged();
    void hangsChanged();
    void reducedChanged();
    void movingChanged();
    /// His clock went on while he moves, or to the end of it.
    void stepped();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    MascotPose pose() const;
    void begin(double age);
    void show();
    void tick();
    void wake();
    void schedule();

    State state_ = State::Idle;
    Mood mood_ = Mood::Curious;
    double size_ = 48;
    bool facesLeft_ = false;
    bool hangs_ = false;
    bool isReduced_ = false;
    bool isMoving_ = false;
    Seconds elapsed_{1};  ///< since the state began; he starts out standing
    Seconds blended_{1};  ///< since he left `from_`
    MascotPose from_;     ///< how he stood when the state began
    MascotPose shown_;    ///< how he was drawn last
    QElapsedTimer clock_; ///< since `elapsed_` was last moved on
    QTimer timer_;
};

} // namespace kippo
