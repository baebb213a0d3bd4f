#include "Theme/Appearance.h"

#include "Theme/Palette.h"

namespace kippo {

namespace {

// The lightest of the dark grounds that accented text stands on, and the darkest of the light ones: what reads there
// reads on all.
constexpr QRgb darkGround = 0xff3a3a40;
constexpr QRgb lightGround = 0xffebebef;
constexpr QRgb panelChip = 0xff222226;

} // namespace

Appearance::Appearance(UserDefaults& defaults, DesktopLook& look, QObject* parent)
    : QObject(parent), defaults_(defaults), look_(look),
      defaultsSubscription_(defaults.observe([this] { emit changed(); })),
      lookSubscription_(look.observe([this] { emit changed(); })) {}

QColor Appearance::chosenAccent() const {
    const auto name = QString::fromStdString(defaults_.get<std::string>("accent", "system"));
    return Palette::accent(name, look_.accent());
}

QColor Appearance::surface() const {
    return Palette::surface(QString::fromStdString(defaults_.get<std::string>("style")));
}

QColor Appearance::panelAccent() const { return Palette::readable(chosenAccent(), QColor{panelChip}); }

QColor Appearance::accent() const { return Palette::filled(chosenAccent()).ground; }

QColor Appearance::accentInk() const { return Palette::filled(chosenAccent()).ink; }

QColor Appearance::accentText() const {
    return Palette::readable(chosenAccent(), QColor{isDark() ? darkGround : lightGround});
}

QColor Appearance::desktopAccent() const { return Palette::accent(QStringLiteral("system"), look_.accent()); }

} // namespace kippo
