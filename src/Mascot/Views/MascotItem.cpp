#include "Mascot/Views/MascotItem.h"

#include "Mascot/Views/MascotPainter.h"

#include <QPainter>
#include <chrono>
#include <cmath>

namespace kippo {

namespace {

using State = MascotItem::State;
using Mood = MascotItem::Mood;

constexpr MascotState plain(State state) { return static_cast<MascotState>(state); }
constexpr MascotMessage::Mood plain(Mood mood) { return static_cast<MascotMessage::Mood>(mood); }
static_assert(plain(State::Idle) == MascotState::idle && plain(State::Talk) == MascotState::talk);
static_assert(plain(State::Panic) == MascotState::panic && plain(Mood::Sleepy) == MascotMessage::Mood::sleepy);

// A drawn figure needs no more pictures than a film.
constexpr std::chrono::milliseconds frame{33};
constexpr std::chrono::milliseconds slowFrame{66};
// From how he stood into how the next state begins.
constexpr Seconds blending{0.14};

QSizeF room(double size) { return MascotPainter::reach.size() * (size / 100); }

} // namespace

MascotItem::MascotItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    setImplicitSize(room(size_).width(), room(size_).height());
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &MascotItem::wake);
    clock_.start();
}

void MascotItem::setState(State state) {
    if (state_ != state) {
        begin(0);
        state_ = state;
        schedule();
        emit stateChanged();
    }
}

void MascotItem::setMood(Mood mood) {
    if (mood_ != mood) {
        mood_ = mood;
        show();
        emit moodChanged();
    }
}

void MascotItem::setSize(double size) {
    if (size_ != size) {
        size_ = size;
        setImplicitSize(room(size).width(), room(size).height());
        update();
        emit sizeChanged();
    }
}

void MascotItem::setFacesLeft(bool facesLeft) {
    if (facesLeft_ != facesLeft) {
        facesLeft_ = facesLeft;
        update();
        emit facesLeftChanged();
    }
}

void MascotItem::setHangs(bool hangs) {
    if (hangs_ != hangs) {
        hangs_ = hangs;
        update();
        emit hangsChanged();
    }
}

void MascotItem::setReduced(bool reduced) {
    if (isReduced_ != reduced) {
        isReduced_ = reduced;
        schedule();
        show();
        emit reducedChanged();
    }
}

void MascotItem::restart(double age) {
    begin(age);
    schedule();
}

void MascotItem::begin(double age) {
    from_ = pose();
    blended_ = Seconds{0};
    elapsed_ = Seconds{age};
    clock_.restart();
    show();
}

void MascotItem::advance(double seconds) {
    const bool wasMoving = isMoving_;
    elapsed_ += Seconds{seconds};
    blended_ += Seconds{seconds};
    schedule();
    show();
    // The last picture of a motion is that of the rest after it.
    if (wasMoving || isMoving_) {
        emit stepped();
    }
}

/// Draws him anew, unless the picture that is there shows him so.
void MascotItem::show() {
    const MascotPose now = pose();
    if (now != shown_) {
        shown_ = now;
        update();
    }
}

void MascotItem::tick() { advance(static_cast<double>(clock_.restart()) / 1000); }

/// A timer that comes late after a rest takes nothing from the stir that begins.
void MascotItem::wake() {
    Seconds passed{static_cast<double>(clock_.restart()) / 1000};
    const std::optional<Seconds> still = MascotMotion::stillFor(plain(state_), elapsed_);
    if (still > Seconds{0}) {
        passed = std::min(passed, *still);
    }
    advance(passed.count());
}

/// Wakes up for the next picture, or for the next time that he stirs; never while nobody sees him.
void MascotItem::schedule() {
    std::optional<Seconds> still = MascotMotion::stillFor(plain(state_), elapsed_);
    if (blended_ < blending) {
        still = Seconds{0};
    }
    const bool moves = still == Seconds{0} && isVisible() && window() && !isReduced_;
    if (!still || !isVisible() || !window() || isReduced_) {
        timer_.stop();
    } else {
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(*still);
        timer_.setTimerType(moves ? Qt::PreciseTimer : Qt::CoarseTimer);
        timer_.start(std::max(wait, MascotMotion::isSlow(plain(state_), elapsed_) ? slowFrame : frame));
    }
    if (moves != isMoving_) {
        isMoving_ = moves;
        emit movingChanged();
    }
}

void MascotItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickPaintedItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged || change == ItemSceneChange) {
        tick();
    }
}

MascotPose MascotItem::pose() const {
    if (isReduced_) {
        return MascotPose::atRest(plain(state_));
    }
    const MascotPose now = MascotPose::at(plain(state_), elapsed_, plain(mood_));
    return blended_ < blending ? MascotPose::mix(from_, now, blended_ / blending) : now;
}

void MascotItem::paint(QPainter* painter) {
    const double unit = size_ / 100;
    const double below = MascotPainter::reach.bottom() * unit;
    painter->translate(width() / 2, hangs_ ? below : height() - below);
    painter->scale(unit, unit);
    MascotPainter::paint(*painter, facesLeft_ ? pose().mirrored() : pose(),
                         hangs_ ? MascotPainter::Stance::hanging : MascotPainter::Stance::standing);
}

} // namespace kippo
