#pragma once

#include "Notch/NotchModel.h"
#include "Notch/NotchOutline.h"

namespace kippo {

/// The silhouette of every mode, for one screen and one state of the settings.
struct NotchShapes {
    NotchShape collapsed;
    NotchShape live;
    NotchShape peek;
    NotchShape expanded;

    const NotchShape& operator[](NotchModel::Mode mode) const;
    bool operator==(const NotchShapes&) const = default;
};

/// Sizes of the notch, in logical pixels.
namespace NotchMetrics {

/// The width of the cut-out drawn on a screen without a camera notch.
inline constexpr double drawnCutoutWidth = 176;
inline constexpr double minimumNotchHeight = 24;
inline constexpr double maximumNotchHeight = 32;

/// The height of the open page below the notch: taller while the mascot has a floor to walk on.
double contentHeight(const UserDefaults& defaults);

/// The size of the visible shape in `mode`.
Size size(NotchModel::Mode mode, Size notch, bool tallPeek, double contentHeight);

/// The sizes with their radii.
NotchShapes shapes(Size notch, bool tallPeek, double contentHeight);

/// The size of the window in which every shape is drawn, with room for the spring to swing.
Size panelSize(Size notch, double contentHeight);

/// Whether the announcement needs the lower, second line: when an agent waits for the user, and when there is more to
/// say than fits beside the notch.
bool isTallPeek(const PeekContent& content);

} // namespace NotchMetrics

} // namespace kippo
