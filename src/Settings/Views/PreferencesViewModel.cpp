#include "Settings/Views/PreferencesViewModel.h"

#include "Theme/Texts.h"

#include <algorithm>

namespace kippo {

namespace {

constexpr const char* builtIn = "builtIn";

} // namespace

PreferencesViewModel::PreferencesViewModel(UserDefaults& defaults, Screens& screens, DesktopLook& look, QObject* parent)
    : QObject(parent), defaults_(defaults), screens_(screens), look_(look) {
    defaultsSubscription_ = defaults_.observe([this] {
        listDisplays();
        emit changed();
    });
    screensSubscription_ = screens_.observe([this] { listDisplays(); });
    lookSubscription_ = look_.observe([this] { emit lookChanged(); });
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

void PreferencesViewModel::listDisplays() {
    const std::vector<Screen> screens = screens_.screens();
    const bool hasBuiltIn = std::ranges::any_of(screens, &Screen::isBuiltIn);
    QList<DisplayChoice> choices{{QString::fromLatin1(builtIn), hasBuiltIn ? QStringLiteral("The built-in display")
                                                                           : QStringLiteral("The main display")}};
    for (const Screen& screen : screens) {
        if (!screen.name.empty()) {
            choices.append({QString::fromStdString(screen.name), oneLine(screen.name)});
        }
    }
    const QString chosen = display();
    if (std::ranges::find(choices, chosen, &DisplayChoice::value) == choices.end()) {
        choices.append({chosen, QStringLiteral("%1 (not connected)").arg(oneLine(chosen.toStdString())), false});
    }
    if (choices != displays_) {
        displays_ = choices;
        emit displaysChanged();
    }
}

} // namespace kippo
