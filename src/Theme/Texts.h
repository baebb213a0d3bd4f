#pragma once

#include <QString>

namespace kippo {

/// UTF-8 of whatever origin as one line for a view: bytes that are not UTF-8 become U+FFFD, line breaks and tabs one
/// space, and what no row could ever show is cut.
inline QString oneLine(std::string_view text) {
    constexpr int longest = 400;
    const std::string_view start = text.substr(0, std::size_t{4} * longest);
    return QString::fromUtf8(start.data(), static_cast<qsizetype>(start.size())).simplified().left(longest);
}

} // namespace kippo
