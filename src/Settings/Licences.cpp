#include "Settings/Licences.h"

#include <array>

namespace kippo {

namespace {

// As the packages' own copyright files have it.
constexpr std::array<Component, 8> all{{
    {"Qt 6", "Windows, text and animation", "LGPL 3"},
    {"RapidJSON", "Reads and writes JSON", "MIT"},
    {"utf8proc", "Knows where characters begin and end", "MIT, Unicode"},
    {"fmt", "Puts numbers and words together", "MIT with exception"},
    {"libcanberra", "Plays the sounds", "LGPL 2.1 or later"},
    {"XCB", "Speaks to the X server", "MIT"},
    {"xkbcommon", "Knows the keyboard's layouts", "MIT"},
    {"Inter", "The typeface", "OFL 1.1"},
}};

} // namespace

std::span<const Component> components() { return all; }

} // namespace kippo
