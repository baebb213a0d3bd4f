#pragma once

#include <QString>
#include <QStringList>

namespace kippo {

/// UTF-8 of whatever origin as one line for a view: bytes that are not UTF-8 become U+FFFD, line breaks and tabs one
/// space, and what no row could ever show is cut.
inline QString oneLine(std::string_view text) {
    constexpr int longest = 400;
    const std::string_view start = text.substr(0, std::size_t{4} * longest);
    return QString::fromUtf8(start.data(), static_cast<qsizetype>(start.size())).simplified().left(longest);
}

/// As `oneLine`, for a text that wraps over several lines of a view: more of it, and "…" where it was cut.
inline QString paragraph(std::string_view text) {
    constexpr int longest = 1200;
    const std::string_view start = text.substr(0, std::size_t{4} * longest);
    QString whole = QString::fromUtf8(start.data(), static_cast<qsizetype>(start.size())).simplified();
    const bool isCut = whole.size() > longest || start.size() < text.size();
    whole.truncate(longest);
    return isCut ? whole + QChar{0x2026} : whole;
}

/// A row's texts as one sentence for a screen reader, without the empty ones.
inline QString spokenLine(QStringList parts) {
    parts.removeAll(QString{});
    return parts.join(QStringLiteral(", "));
}

} // namespace kippo
