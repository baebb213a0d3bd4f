#pragma once

namespace kippo {

/// A point in logical pixels, y downwards.
struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

/// A size in logical pixels.
struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};

/// A rectangle in logical pixels, y downwards.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool operator==(const Rect&) const = default;
};

} // namespace kippo
