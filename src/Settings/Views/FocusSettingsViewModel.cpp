#include "Settings/Views/FocusSettingsViewModel.h"

#include "Mascot/Coach.h"
#include "Settings/QuietTime.h"
#include "Theme/Texts.h"

#include <algorithm>

namespace kippo {

namespace {

// He may speak again while the window stands open.
constexpr Seconds clockInterval{20};
constexpr Seconds clockTolerance{10};

} // namespace

FocusSettingsViewModel::FocusSettingsViewModel(UserDefaults& defaults, Scheduler& scheduler, QObject* parent)
    : QObject(parent), defaults_(defaults), scheduler_(scheduler),
      clock_(scheduler.every(clockInterval, clockTolerance, [this] { emit changed(); })),
      subscription_(defaults.observe([this] { emit changed(); })) {}

int FocusSettingsViewModel::minutes(std::string_view key) const {
    return static_cast<int>(std::clamp<std::int64_t>(defaults_.get<std::int64_t>(key), 1, 24 * 60));
}

void FocusSettingsViewModel::setMinutes(std::string_view key, int minutes) {
    defaults_.set(key, std::int64_t{std::max(minutes, 1)});
}

QString FocusSettingsViewModel::quiet() const {
    const Date now = scheduler_.now();
    return oneLine(quietSentence(Coach::quiet(defaults_, now), now));
}

void FocusSettingsViewModel::keepQuiet() { Coach::muteForToday(scheduler_, defaults_); }

void FocusSettingsViewModel::speakAgain() { Coach::speakAgain(defaults_); }

} // namespace kippo
