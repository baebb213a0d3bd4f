#pragma once

#include "Mascot/MascotPose.h"

#include <QRectF>

class QPainter;

namespace kippo {

/// Draws the mascot as his pose says. The pen of all his pictures: the panel's, the contact sheet's, the icon's.
namespace MascotPainter {

/// What he needs of the plane around him at most, in hundredths of his height; he stands on (0, 0), y grows downward.
inline constexpr QRectF reach{-75, -145, 150, 150};

enum class Stance { standing, hanging };

/// Draws him standing on the painter's origin, or hanging from it head down; one unit is a hundredth of his height.
/// Leaves the painter as it was.
void paint(QPainter& painter, const MascotPose& pose, Stance stance = Stance::standing);

} // namespace MascotPainter

} // namespace kippo
