#include "Settings/Views/PreferencesViewModel.h"

#include "Notch/NotchMetrics.h"
#include "Theme/Palette.h"
#include "Theme/Texts.h"

#include <algorithm>
#include <cmath>

namespace kippo {

namespace {

constexpr const char* builtIn = "builtIn";

QVariantList choices(std::span<const Palette::Choice> from) {
    QVariantList all;
    for (const Palette::Choice& choice : from) {
        all.append(QVariant::fromValue(
            ColourChoice{QString::fromLatin1(choice.value), QString::fromLatin1(choice.label), QColor{choice.colour}}));
    }
    return all;
}

/// `value` where it is one of the choices, else the first of them.
QString known(const std::string& value, std::span<const Palette::Choice> from) {
    const auto found =
        std::ranges::find_if(from, [&value](const Palette::Choice& choice) { return value == choice.value; });
    return QString::fromLatin1((found == from.end() ? from.front() : *found).value);
}

} // namespace

PreferencesViewModel::PreferencesViewModel(UserDefaults& defaults, Screens& screens, QObject* parent)
    : QObject(parent), defaults_(defaults), screens_(screens) {
    defaultsSubscription_ = defaults_.observe([this] {
        listDisplays();
        emit changed();
    });
    screensSubscription_ = screens_.observe([this] { listDisplays(); });
    listDisplays();
}

QString PreferencesViewModel::display() const {
    return QString::fromStdString(defaults_.get<std::string>("display", builtIn));
}

QVariantList PreferencesViewModel::displays() const {
    QVariantList all;
    for (const DisplayChoice& choice : displays_) {
        all.append(QVariant::fromValue(choice));
    }
    return all;
}

QVariantList PreferencesViewModel::styles() { return choices(Palette::styles()); }

QString PreferencesViewModel::style() const { return known(defaults_.get<std::string>("style"), Palette::styles()); }

QVariantList PreferencesViewModel::accents() { return choices(Palette::accents()); }

QString PreferencesViewModel::accent() const {
    const auto value = defaults_.get<std::string>("accent", "system");
    return value == "system" ? QStringLiteral("system") : known(value, Palette::accents());
}

void PreferencesViewModel::setHasCutout(bool has) {
    setCutoutWidth(has ? static_cast<int>(NotchMetrics::drawnCutoutWidth) : 0);
    setCutoutHeight(has ? static_cast<int>(NotchMetrics::maximumNotchHeight) : 0);
}

int PreferencesViewModel::whole(std::string_view key) const {
    return static_cast<int>(std::lround(std::clamp(defaults_.get<double>(key), 0.0, 10000.0)));
}

void PreferencesViewModel::listDisplays() {
    const std::vector<Screen> screens = screens_.screens();
    const bool hasBuiltIn = std::ranges::any_of(screens, &Screen::isBuiltIn);
    QList<DisplayChoice> found{{QString::fromLatin1(builtIn), hasBuiltIn ? QStringLiteral("The built-in display")
                                                                         : QStringLiteral("The main display")}};
    for (const Screen& screen : screens) {
        if (!screen.name.empty()) {
            found.append({QString::fromStdString(screen.name), oneLine(screen.name)});
        }
    }
    const QString chosen = display();
    if (std::ranges::find(found, chosen, &DisplayChoice::value) == found.end()) {
        found.append({chosen, QStringLiteral("%1 (not connected)").arg(oneLine(chosen.toStdString())), false});
    }
    if (found != displays_) {
        displays_ = found;
        emit displaysChanged();
    }
}

} // namespace kippo
