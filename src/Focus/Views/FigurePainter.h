#pragma once

#include "Focus/Stretch.h"

class QPainter;

namespace kippo {

/// Draws the figure that shows the stretches: somebody who sits with crossed legs, in a few round strokes.
namespace FigurePainter {

/// The picture's width, as its height is 1: with the arms spread wide.
inline constexpr double width = 1.3;

enum class Eyes { closed, open };

/// Draws the figure as its joints say. The painter's origin is the middle of the picture's lower edge, its unit the
/// picture's height, and y grows downward. Leaves the painter as it was.
void paint(QPainter& painter, const FigurePose& pose, Eyes eyes = Eyes::closed);

} // namespace FigurePainter

} // namespace kippo
