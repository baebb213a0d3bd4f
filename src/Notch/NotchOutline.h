#pragma once

#include "Notch/Geometry.h"

#include <vector>

namespace kippo {

/// The four values that make the notch's silhouette, in logical pixels. The shape hangs from the screen's top edge; its
/// width is measured along that edge and includes both shoulders.
struct NotchShape {
    double width = 0;
    double height = 0;
    double topRadius = 0;    ///< of the concave shoulders that flare into the screen's edge
    double bottomRadius = 0; ///< of the convex lower corners
    bool operator==(const NotchShape&) const = default;
};

/// Rows `y` to `y + height - 1`, columns `x` to `x + width - 1`, in device pixels.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const PixelRect&) const = default;
};

/// The silhouette as geometry. Its axis is x = 0 and the screen's top edge y = 0, so the owner adds the panel's centre.
/// The corners' curvature grows and fades instead of jumping as a circle's does, which is what makes black on a screen
/// look machined. Drawing and hit testing both come from here, so they cannot disagree.
class NotchOutline {
public:
    /// Radii that do not fit into the size are made smaller together; negative values count as 0.
    explicit NotchOutline(const NotchShape& shape);

    /// One piece of the path, continuing where the one before ended.
    struct Segment {
        bool isCurve = false;
        Point control1; ///< of a curve
        Point control2; ///< of a curve
        Point end;
    };
    struct Path {
        Point start;
        std::vector<Segment> segments; ///< clockwise; ends at the start
    };
    Path path() const;

    /// Half of the width at depth `y`; 0 outside of the shape's height.
    double halfWidth(double y) const;

    /// Whether the point lies in the shape. The screen's very edge, y = 0, does.
    bool contains(Point point) const;

    /// The device pixels whose centre lies in the shape, with equal neighbouring rows joined. `axis` is where the
    /// shape's axis lies, in logical pixels; `scale` is device pixels per logical pixel.
    std::vector<PixelRect> pixels(double axis, double scale) const;

private:
    struct Corner {
        double length = 0; ///< from the sharp corner to where the curve leaves the straight line
        double handle = 0; ///< of the curve's control points, measured from the ends of the curve
    };
    static double depthToInset(const Corner& corner, double depth);

    double width_;
    double height_;
    Corner top_;
    Corner bottom_;
};

/// The device pixels whose centre lies in `rect` with its corners rounded by `radius`, in logical pixels.
std::vector<PixelRect> roundedPixels(const Rect& rect, double radius, double scale);

} // namespace kippo
