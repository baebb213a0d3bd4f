#include "Focus/Views/FocusViewModel.h"

#include <QDateTime>
#include <QLocale>
#include <cmath>

namespace kippo {

namespace {

using Phase = FocusViewModel::Phase;

static_assert(static_cast<int>(Phase::Focus) == static_cast<int>(FocusStore::Phase::focus));
static_assert(static_cast<int>(Phase::LongBreak) == static_cast<int>(FocusStore::Phase::longBreak));

/// The time of day as the desktop writes it, to the nearest minute.
QString timeOfDay(Date date) {
    const auto minute = static_cast<qint64>(std::round(unixSeconds(date) / 60));
    const QLocale desktop = QLocale::system();
    // Some desktops' short form has seconds.
    const QString format = desktop.timeFormat(QLocale::ShortFormat).remove(QStringLiteral(":ss"));
    return desktop.toString(QDateTime::fromSecsSinceEpoch(60 * minute).time(), format);
}

} // namespace

FocusViewModel::FocusViewModel(FocusStore& store, Scheduler& scheduler, UserDefaults& defaults, QObject* parent)
    : QObject(parent), store_(store), scheduler_(scheduler), defaults_(defaults),
      timerChanges_(store.observe([this] { emit changed(); })),
      settingChanges_(defaults.observe([this] { emit changed(); })) {}

QString FocusViewModel::headline() const { return QString::fromStdString(store_.headline()); }

QString FocusViewModel::subline() const { return QString::fromStdString(store_.subline()); }

QString FocusViewModel::upNext() const { return QString::fromStdString(store_.upNext()); }

QString FocusViewModel::note() const {
    if (isPaused()) {
        return QStringLiteral("paused");
    }
    return store_.endsAt() ? QStringLiteral("until ") + timeOfDay(*store_.endsAt()) : QString{};
}

QString FocusViewModel::roundsSpoken() const {
    return QStringLiteral("%1 of %2 rounds done").arg(roundsDone()).arg(rounds());
}

void FocusViewModel::setMinutes(int minutes) {
    if (minutes != this->minutes()) {
        defaults_.set("focusMinutes", std::int64_t{minutes});
    }
}

void FocusViewModel::stepMinutes(int steps) { setMinutes(FocusStore::steppedMinutes(minutes(), steps)); }

QString FocusViewModel::toggleText() const {
    if (isIdle()) {
        return QStringLiteral("Start %1 min").arg(minutes());
    }
    return isPaused() ? QStringLiteral("Resume") : QStringLiteral("Pause");
}

QString FocusViewModel::toggleSpoken() const {
    return isIdle() ? QStringLiteral("Start a %1-minute focus").arg(minutes()) : toggleText();
}

QString FocusViewModel::skipText() const {
    return isBreak() ? QStringLiteral("Skip break") : QStringLiteral("Finish round");
}

QString FocusViewModel::skipHelp() const {
    return isBreak() ? QStringLiteral("Ends the break now") : QStringLiteral("Ends the round now; it counts");
}

QString FocusViewModel::resetHelp() const {
    return isBreak() ? QStringLiteral("Stops the timer") : QStringLiteral("Stops the timer; this round does not count");
}

} // namespace kippo
