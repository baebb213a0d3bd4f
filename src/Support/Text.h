#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Text as people count it. "Characters" are grapheme clusters: a flag, a family emoji or a letter with its combining
/// marks is one. All input is taken as UTF-8; bytes that are not are each a character of their own.
namespace kippo::Text {

/// U+FFFD, what stands for bytes that are not UTF-8.
inline constexpr std::string_view replacement = "\xEF\xBF\xBD";

/// A code point, and the bytes that it takes.
struct CodePoint {
    std::int32_t value = -1; ///< -1 for a byte that is not UTF-8
    std::size_t bytes = 1;
};

/// The code point at the start of `text`, which is not empty.
CodePoint firstCodePoint(std::string_view text);

/// The first `count` characters of `text`, or all of it.
std::string_view prefix(std::string_view text, std::size_t count);

/// Whether `text` has more than `count` characters; reads no further than it must.
bool isLongerThan(std::string_view text, std::size_t count);

/// `text` when it has at most `limit` characters, else its first `kept` followed by "…".
std::string shortened(std::string_view text, std::size_t limit, std::size_t kept);

/// `text` with every byte sequence that is not UTF-8 replaced by U+FFFD.
std::string validUtf8(std::string_view text);

/// Without white space (the ASCII kinds) at both ends.
std::string_view trimmed(std::string_view text);

/// ASCII letters made small, everything else kept.
std::string lowered(std::string_view text);

/// The pieces between `separator`s, empty ones dropped.
std::vector<std::string_view> split(std::string_view text, char separator);

/// What follows the last '/'; the whole text when there is none. Trailing slashes are ignored.
std::string_view lastPathComponent(std::string_view path);

} // namespace kippo::Text
