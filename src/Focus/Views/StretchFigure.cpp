#include "Focus/Views/StretchFigure.h"

#include "Focus/Views/FigurePainter.h"

#include <QPainter>
#include <chrono>

namespace kippo {

namespace {

// A drawn figure needs no more pictures than a film.
constexpr std::chrono::milliseconds frame{33};
// Less motion: often enough to be in time for the next still picture.
constexpr std::chrono::milliseconds stillFrame{500};

} // namespace

StretchFigure::StretchFigure(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(&timer_, &QTimer::timeout, this, &StretchFigure::show);
}

void StretchFigure::setStretch(StretchViewModel* stretch) {
    if (stretch_ == stretch) {
        return;
    }
    if (stretch_) {
        stretch_->disconnect(this);
    }
    stretch_ = stretch;
    if (stretch_) {
        connect(stretch_, &StretchViewModel::changed, this, &StretchFigure::follow);
    }
    follow();
    emit stretchChanged();
}

void StretchFigure::setReduced(bool reduced) {
    if (isReduced_ != reduced) {
        isReduced_ = reduced;
        follow();
        emit reducedChanged();
    }
}

void StretchFigure::follow() {
    const bool moves = stretch_ && stretch_->isOn() && !stretch_->isFinished() && isVisible() && window();
    if (moves) {
        timer_.setTimerType(isReduced_ ? Qt::CoarseTimer : Qt::PreciseTimer);
        timer_.start(isReduced_ ? stillFrame : frame);
    } else {
        timer_.stop();
    }
    show();
}

void StretchFigure::show() {
    const FigurePose pose = stretch_ ? stretch_->figure(isReduced_) : FigurePose{};
    const bool isFinished = stretch_ && stretch_->isFinished();
    if (pose != pose_ || isFinished != isFinished_) {
        pose_ = pose;
        isFinished_ = isFinished;
        update();
    }
}

void StretchFigure::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickPaintedItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged || change == ItemSceneChange) {
        follow();
    }
}

void StretchFigure::paint(QPainter* painter) {
    painter->translate(width() / 2, height());
    painter->scale(height(), height());
    FigurePainter::paint(*painter, pose_, isFinished_ ? FigurePainter::Eyes::open : FigurePainter::Eyes::closed);
}

} // namespace kippo
