#include "Support/Text.h"

#include <algorithm>
#include <utf8proc.h>

namespace kippo::Text {

namespace {

constexpr std::string_view whiteSpace = " \t\n\r\f\v";

bool isPlainAscii(unsigned char byte) { return byte < 0x80 && byte != '\r'; }

/// The byte length of the first character. ASCII followed by ASCII never joins (but for CR LF), which keeps the common
/// case clear of the Unicode tables.
std::size_t clusterLength(std::string_view text) {
    if (isPlainAscii(static_cast<unsigned char>(text[0])) &&
        (text.size() == 1 || static_cast<unsigned char>(text[1]) < 0x80)) {
        return 1;
    }
    auto [previous, length] = firstCodePoint(text);
    utf8proc_int32_t state = 0;
    while (length < text.size()) {
        const auto [next, bytes] = firstCodePoint(text.substr(length));
        if (previous < 0 || next < 0 || utf8proc_grapheme_break_stateful(previous, next, &state)) {
            break;
        }
        previous = next;
        length += bytes;
    }
    return length;
}

} // namespace

CodePoint firstCodePoint(std::string_view text) {
    utf8proc_int32_t value = -1;
    const auto bytes = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                        static_cast<utf8proc_ssize_t>(text.size()), &value);
    return bytes > 0 ? CodePoint{value, static_cast<std::size_t>(bytes)} : CodePoint{};
}

std::string_view prefix(std::string_view text, std::size_t count) {
    std::size_t end = 0;
    for (; count > 0 && end < text.size(); --count) {
        end += clusterLength(text.substr(end));
    }
    return text.substr(0, end);
}

bool isLongerThan(std::string_view text, std::size_t count) {
    return text.size() > count && prefix(text, count).size() < text.size();
}

std::string shortened(std::string_view text, std::size_t limit, std::size_t kept) {
    return isLongerThan(text, limit) ? std::string{prefix(text, kept)} + "…" : std::string{text};
}

std::string validUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto [value, bytes] = firstCodePoint(text);
        result.append(value < 0 ? replacement : text.substr(0, bytes));
        text.remove_prefix(bytes);
    }
    return result;
}

std::string_view trimmed(std::string_view text) {
    const auto start = text.find_first_not_of(whiteSpace);
    if (start == std::string_view::npos) {
        return {};
    }
    return text.substr(start, text.find_last_not_of(whiteSpace) - start + 1);
}

std::string lowered(std::string_view text) {
    std::string result{text};
    std::ranges::transform(result, result.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return result;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    while (!text.empty()) {
        const auto end = std::min(text.find(separator), text.size());
        if (end > 0) {
            pieces.push_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return pieces;
}

std::string_view lastPathComponent(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) {
        path.remove_suffix(1);
    }
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos || path.size() == 1 ? path : path.substr(slash + 1);
}

} // namespace kippo::Text
