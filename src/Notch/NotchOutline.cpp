#include "Notch/NotchOutline.h"

#include <algorithm>
#include <cmath>

namespace kippo {

namespace {

// A corner starts this many radii before the sharp corner, where a circle would start at one. With the handle below
// the curve passes the circle's own midpoint, and leaves the straight line with a curvature of a tenth of the circle's.
constexpr double cornerReach = 1.6;
constexpr double handleShare = 0.845;

double cubic(double p0, double p1, double p2, double p3, double t) {
    const double u = 1 - t;
    return u * u * u * p0 + 3 * u * u * t * p1 + 3 * u * t * t * p2 + t * t * t * p3;
}

/// The pixels of a shape that is `halfWidth(y)` wide on either side of its axis, from `top` to `bottom`.
template <typename HalfWidth>
std::vector<PixelRect> scanLines(double axis, double top, double bottom, double scale, const HalfWidth& halfWidth) {
    std::vector<PixelRect> rects;
    const int end = static_cast<int>(std::ceil(bottom * scale));
    for (int row = static_cast<int>(std::floor(top * scale)); row < end; ++row) {
        const double half = halfWidth((row + 0.5) / scale);
        const int left = static_cast<int>(std::ceil((axis - half) * scale - 0.5));
        const int right = static_cast<int>(std::ceil((axis + half) * scale - 0.5));
        if (right <= left) {
            continue;
        }
        if (!rects.empty()) {
            PixelRect& above = rects.back();
            if (above.x == left && above.width == right - left && above.y + above.height == row) {
                ++above.height;
                continue;
            }
        }
        rects.push_back({left, row, right - left, 1});
    }
    return rects;
}

} // namespace

NotchOutline::NotchOutline(const NotchShape& shape)
    : width_(std::max(shape.width, 0.0)), height_(std::max(shape.height, 0.0)) {
    double top = std::max(shape.topRadius, 0.0) * cornerReach;
    double bottom = std::max(shape.bottomRadius, 0.0) * cornerReach;
    if (const double reach = top + bottom; reach > 0) {
        const double fit = std::min({1.0, height_ / reach, width_ / 2 / reach});
        top *= fit;
        bottom *= fit;
    }
    top_ = {top, top * handleShare};
    bottom_ = {bottom, bottom * handleShare};
}

NotchOutline::Path NotchOutline::path() const {
    const double edge = width_ / 2;
    const double side = edge - top_.length;
    const double floor = side - bottom_.length;
    const auto line = [](double x, double y) { return Segment{false, {}, {}, {x, y}}; };
    Path path;
    path.start = {-edge, 0};
    path.segments = {
        line(edge, 0),
        {true, {edge - top_.handle, 0}, {side, top_.length - top_.handle}, {side, top_.length}},
        line(side, height_ - bottom_.length),
        {true,
         {side, height_ - bottom_.length + bottom_.handle},
         {side - bottom_.length + bottom_.handle, height_},
         {floor, height_}},
        line(-floor, height_),
        {true,
         {-side + bottom_.length - bottom_.handle, height_},
         {-side, height_ - bottom_.length + bottom_.handle},
         {-side, height_ - bottom_.length}},
        line(-side, top_.length),
        {true, {-side, top_.length - top_.handle}, {-edge + top_.handle, 0}, {-edge, 0}},
    };
    return path;
}

double NotchOutline::depthToInset(const Corner& corner, double depth) {
    // The curve from (0, 0), leaving along x, to (length, length), arriving along y: how far in x at the depth y?
    const double length = corner.length;
    double low = 0;
    double high = 1;
    for (int step = 0; step < 40; ++step) {
        const double middle = (low + high) / 2;
        (cubic(0, 0, length - corner.handle, length, middle) < depth ? low : high) = middle;
    }
    return cubic(0, corner.handle, length, length, low);
}

double NotchOutline::halfWidth(double y) const {
    if (y < 0 || y >= height_) {
        return 0;
    }
    const double edge = width_ / 2;
    if (y < top_.length) {
        return edge - depthToInset(top_, y);
    }
    const double side = edge - top_.length;
    const double aboveFloor = height_ - y;
    if (aboveFloor < bottom_.length) {
        return side - bottom_.length + depthToInset(bottom_, aboveFloor);
    }
    return side;
}

bool NotchOutline::contains(Point point) const {
    return point.y >= 0 && point.y < height_ && std::abs(point.x) < halfWidth(point.y);
}

std::vector<PixelRect> NotchOutline::pixels(double axis, double scale) const {
    return scanLines(axis, 0, height_, scale, [this](double y) { return halfWidth(y); });
}

std::vector<PixelRect> roundedPixels(const Rect& rect, double radius, double scale) {
    const double corner = std::min({radius, rect.width / 2, rect.height / 2});
    const auto halfWidth = [&](double y) {
        const double fromEdge = std::min(y - rect.y, rect.y + rect.height - y);
        if (fromEdge <= 0) {
            return 0.0;
        }
        const double inset = std::max(corner - fromEdge, 0.0);
        return rect.width / 2 - corner + std::sqrt(corner * corner - inset * inset);
    };
    return scanLines(rect.x + rect.width / 2, rect.y, rect.y + rect.height, scale, halfWidth);
}

} // namespace kippo
