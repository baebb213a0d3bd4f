#pragma once

#include <QImage>

namespace kippo {

/// The mascot's contact sheet: every state at several moments and three sizes, on the panel's black and on a light
/// window. For whoever changes the drawing.
QImage mascotSheet();

} // namespace kippo
