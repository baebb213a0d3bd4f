#pragma once

#include <QColor>
#include <QString>
#include <cstdint>
#include <optional>
#include <span>

namespace kippo {

/// The colours that people can choose, and what makes any colour readable.
namespace Palette {

/// One choice of a setting, as it is stored and as people read it.
struct Choice {
    const char* value;
    const char* label;
    QRgb colour;
};

/// The panel's grounds: the setting "style".
std::span<const Choice> styles();
/// The accents, apart from "system": the setting "accent".
std::span<const Choice> accents();

/// An unknown style is the first one.
QColor surface(const QString& style);
/// "system" is the desktop's own accent, 0xRRGGBB, or the first of ours where it has none; so is an unknown one.
QColor accent(const QString& accent, std::optional<std::uint32_t> desktop);

/// The contrast of two opaque colours after WCAG 2, from 1 to 21.
double contrast(const QColor& one, const QColor& other);
/// `colour`, as far towards white or black as it takes for text on `ground`.
QColor readable(const QColor& colour, const QColor& ground);

/// A control's ground and the text on it.
struct Pair {
    QColor ground;
    QColor ink;
};
/// `colour` as a control's ground: under white, which may darken it somewhat, or under near-black where it is light.
Pair filled(const QColor& colour);

} // namespace Palette

} // namespace kippo
