#pragma once

#include <QImage>

namespace kippo {

/// The stretches' contact sheet: each of them at several moments, on the panel's black. For whoever changes the drawing
/// or the motions.
QImage stretchSheet();

} // namespace kippo
