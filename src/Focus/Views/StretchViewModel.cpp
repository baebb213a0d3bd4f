#include "Focus/Views/StretchViewModel.h"

#include <algorithm>
#include <cmath>

namespace kippo {

namespace {

QString text(std::string_view view) { return QString::fromUtf8(view.data(), static_cast<qsizetype>(view.size())); }

} // namespace

StretchViewModel::StretchViewModel(StretchStore& store, Scheduler& scheduler, QObject* parent)
    : QObject(parent), store_(store), scheduler_(scheduler), subscription_(store.observe([this] {
          emit changed();
          tick();
      })) {}

void StretchViewModel::begin() const {
    if (onBegin) {
        onBegin();
    }
}

QString StretchViewModel::title() const {
    return pose() ? kippo::text(pose()->name) : QStringLiteral("All loosened up 🎉");
}

QString StretchViewModel::text() const {
    return pose() ? kippo::text(pose()->cue)
                  : QStringLiteral("Last one, for your eyes: look at something about 20 feet away for 20 seconds.");
}

QString StretchViewModel::nextText() const {
    if (isFinished()) {
        return QStringLiteral("Done");
    }
    return index() + 1 < count() ? QStringLiteral("Next") : QStringLiteral("Finish");
}

QString StretchViewModel::spoken() const {
    return isFinished() ? QStringLiteral("All stretches done")
                        : QStringLiteral("Stretch %1 of %2").arg(index() + 1).arg(count());
}

QString StretchViewModel::side() const {
    if (!pose() || !pose()->hasSides) {
        return {};
    }
    return pose()->isOnSecondSide(elapsed()) ? QStringLiteral("Right side") : QStringLiteral("Left side");
}

double StretchViewModel::progress() const {
    return pose() ? std::clamp(std::floor(elapsed() / Seconds{1}) / pose()->duration.count(), 0.0, 1.0) : 1;
}

QString StretchViewModel::left() const {
    const double seconds = pose() ? pose()->duration.count() - std::floor(elapsed().count()) : 0;
    return QStringLiteral("%1 s").arg(std::max(0, static_cast<int>(seconds)));
}

void StretchViewModel::setShown(bool shown) {
    if (isShown_ != shown) {
        isShown_ = shown;
        tick();
        emit shownChanged();
    }
}

FigurePose StretchViewModel::figure(bool reduced) const {
    if (!pose()) {
        return {};
    }
    return pose()->motion(reduced ? StretchRoutine::stillMoment(elapsed()) : elapsed());
}

Seconds StretchViewModel::elapsed() const { return std::max(scheduler_.now() - store_.poseStartedAt(), Seconds{0}); }

void StretchViewModel::tick() {
    next_.cancel();
    if (isShown_ && pose()) {
        const double seconds = elapsed().count();
        next_ = scheduler_.after(Seconds{std::floor(seconds) + 1 - seconds}, [this] { tick(); });
    }
    emit ticked();
}

} // namespace kippo
