#include "Notch/NotchMetrics.h"

#include "Support/Text.h"
#include "Support/UserDefaults.h"

namespace kippo {

namespace {

constexpr double contentHeightWithFloor = 214;
constexpr double contentHeightWithoutFloor = 184;
constexpr double wingsWidth = 92;     ///< both wings of the live notch
constexpr double peekWidth = 208;     ///< both sides of an announcement
constexpr double shouldersWidth = 12; ///< both shoulders of the closed notch when it is wider than the cut-out
constexpr double tallPeekExtra = 40;
constexpr double expandedWidth = 664;
constexpr double panelWidth = 752;
constexpr double panelExtraHeight = 44;

constexpr double closedTopRadius = 6;
constexpr double closedBottomRadius = 10;
constexpr double tallPeekBottomRadius = 16;
constexpr double expandedTopRadius = 12;
constexpr double expandedBottomRadius = 24;

/// Beside the notch an announcement has room for about this many characters.
constexpr std::size_t shortPeekCharacters = 24;

} // namespace

const NotchShape& NotchShapes::operator[](NotchModel::Mode mode) const {
    switch (mode) {
    case NotchModel::Mode::live:
        return live;
    case NotchModel::Mode::peek:
        return peek;
    case NotchModel::Mode::expanded:
        return expanded;
    case NotchModel::Mode::collapsed:
        break;
    }
    return collapsed;
}

namespace NotchMetrics {

double contentHeight(const UserDefaults& defaults) {
    const bool hasFloor = defaults.get<bool>("mascotEnabled") && defaults.get<bool>("mascotRoams");
    return hasFloor ? contentHeightWithFloor : contentHeightWithoutFloor;
}

Size size(NotchModel::Mode mode, Size notch, bool tallPeek, double contentHeight) {
    switch (mode) {
    case NotchModel::Mode::live:
        return {notch.width + wingsWidth + shouldersWidth, notch.height};
    case NotchModel::Mode::peek: {
        const double extra = tallPeek ? tallPeekExtra : 0;
        return {notch.width + peekWidth + shouldersWidth + extra, notch.height + extra};
    }
    case NotchModel::Mode::expanded:
        return {expandedWidth, notch.height + contentHeight};
    case NotchModel::Mode::collapsed:
        break;
    }
    return notch;
}

NotchShapes shapes(Size notch, bool tallPeek, double contentHeight) {
    const auto shape = [&](NotchModel::Mode mode, double topRadius, double bottomRadius) {
        const Size total = size(mode, notch, tallPeek, contentHeight);
        return NotchShape{total.width, total.height, topRadius, bottomRadius};
    };
    using Mode = NotchModel::Mode;
    return {shape(Mode::collapsed, closedTopRadius, closedBottomRadius),
            shape(Mode::live, closedTopRadius, closedBottomRadius),
            shape(Mode::peek, closedTopRadius, tallPeek ? tallPeekBottomRadius : closedBottomRadius),
            shape(Mode::expanded, expandedTopRadius, expandedBottomRadius)};
}

Size panelSize(Size notch, double contentHeight) {
    return {panelWidth, notch.height + contentHeight + panelExtraHeight};
}

bool isTallPeek(const PeekContent& content) {
    const auto& session = std::get<AgentSession>(content);
    return session.status.isNeedsYou() || Text::isLongerThan(session.sentence(false), shortPeekCharacters);
}

} // namespace NotchMetrics

} // namespace kippo
