#include "Theme/Palette.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kippo::Palette {

namespace {

constexpr std::array<Choice, 3> allStyles{{
    {"black", "Black", 0xff000000},
    {"graphite", "Graphite", 0xff18181b},
    {"midnight", "Midnight", 0xff0b1022},
}};

constexpr std::array<Choice, 8> allAccents{{
    {"blue", "Blue", 0xff2f7bf6},
    {"purple", "Purple", 0xff9a5bd6},
    {"pink", "Pink", 0xffe8559a},
    {"red", "Red", 0xffe5484d},
    {"orange", "Orange", 0xfff0883a},
    {"yellow", "Yellow", 0xffe7b416},
    {"green", "Green", 0xff46a758},
    {"graphite", "Graphite", 0xff8a8a90},
}};

// What WCAG asks of text, and of what is no text.
constexpr double textContrast = 4.5;
constexpr double shapeContrast = 3;

constexpr QRgb nearBlack = 0xff1d1d1f;

const Choice& chosen(std::span<const Choice> choices, const QString& value) {
    const auto isIt = [&value](const Choice& choice) { return value == QLatin1StringView{choice.value}; };
    const auto found = std::ranges::find_if(choices, isIt);
    return found == choices.end() ? choices.front() : *found;
}

double linear(double part) { return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4); }

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

/// `share` of the way from one colour to the other.
QColor mixed(const QColor& from, const QColor& to, double share) {
    const auto part = [share](int start, int end) {
        return start + static_cast<int>(std::lround((end - start) * share));
    };
    return {part(from.red(), to.red()), part(from.green(), to.green()), part(from.blue(), to.blue())};
}

/// The nearest colour on the way to `pole` that has the contrast of text on `ground`.
QColor towards(const QColor& colour, const QColor& pole, const QColor& ground) {
    constexpr int steps = 40;
    for (int step = 0; step < steps; ++step) {
        const QColor candidate = mixed(colour, pole, static_cast<double>(step) / steps);
        if (contrast(candidate, ground) >= textContrast) {
            return candidate;
        }
    }
    return pole;
}

} // namespace

std::span<const Choice> styles() { return allStyles; }

std::span<const Choice> accents() { return allAccents; }

QColor surface(const QString& style) { return QColor{chosen(allStyles, style).colour}; }

QColor accent(const QString& accent, std::optional<std::uint32_t> desktop) {
    if (accent == u"system" && desktop) {
        return QColor{QRgb{*desktop}};
    }
    return QColor{chosen(allAccents, accent).colour};
}

double contrast(const QColor& one, const QColor& other) {
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

QColor readable(const QColor& colour, const QColor& ground) {
    const bool isDark = contrast(ground, Qt::white) > contrast(ground, Qt::black);
    return towards(colour, isDark ? Qt::white : Qt::black, ground);
}

Pair filled(const QColor& colour) {
    if (contrast(colour, Qt::white) >= shapeContrast) {
        return {towards(colour, Qt::black, Qt::white), Qt::white};
    }
    return {colour, QColor{nearBlack}};
}

} // namespace kippo::Palette
