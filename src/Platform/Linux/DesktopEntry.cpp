#include "Platform/Linux/DesktopEntry.h"

#include <algorithm>

namespace kippo {

namespace {

constexpr std::string_view header = "[Desktop Entry]";
constexpr std::string_view blanks = " \t\r";

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? std::string_view{}
                                           : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

} // namespace

DesktopEntry::DesktopEntry(std::string_view text) {
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        lines_.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    const auto found = std::ranges::find(lines_, header, trimmed);
    if (found == lines_.end()) {
        lines_.emplace_back(header);
        begin_ = lines_.size();
    } else {
        begin_ = static_cast<std::size_t>(found - lines_.begin()) + 1;
    }
}

std::size_t DesktopEntry::endOfGroup() const {
    auto end = begin_;
    while (end < lines_.size() && !lines_[end].starts_with('[')) {
        ++end;
    }
    // Before the empty lines that keep the next group apart.
    while (end > begin_ && trimmed(lines_[end - 1]).empty()) {
        --end;
    }
    return end;
}

std::size_t DesktopEntry::find(std::string_view key) const {
    const std::size_t end = endOfGroup();
    for (std::size_t i = begin_; i < end; ++i) {
        const auto equals = lines_[i].find('=');
        if (equals != std::string::npos && trimmed(std::string_view{lines_[i]}.substr(0, equals)) == key) {
            return i;
        }
    }
    return end;
}

std::optional<std::string> DesktopEntry::value(std::string_view key) const {
    const std::size_t line = find(key);
    if (line == endOfGroup()) {
        return std::nullopt;
    }
    return std::string{trimmed(std::string_view{lines_[line]}.substr(lines_[line].find('=') + 1))};
}

void DesktopEntry::set(std::string_view key, std::string_view value) {
    const std::size_t line = find(key);
    if (line == endOfGroup()) {
        lines_.emplace(lines_.begin() + static_cast<std::ptrdiff_t>(line));
    }
    lines_[line] = std::string{key} + "=" + std::string{value};
}

std::string DesktopEntry::text() const {
    std::string text;
    for (const std::string& line : lines_) {
        text += line + "\n";
    }
    return text;
}

std::string DesktopEntry::escaped(std::string_view text) {
    std::string value;
    for (const char character : text) {
        switch (character) {
        case '\\':
            value += "\\\\";
            break;
        case '\n':
            value += "\\n";
            break;
        case '\r':
            value += "\\r";
            break;
        case ' ':
            value += value.empty() ? "\\s" : " ";
            break;
        default:
            value += character;
        }
    }
    return value;
}

std::string DesktopEntry::commandWord(std::string_view path) {
    std::string word;
    for (const char character : path) {
        // Quoted for the command line; a percent sign would be a placeholder there.
        if (std::string_view{"\"`$\\"}.contains(character)) {
            word += '\\';
        } else if (character == '%') {
            word += '%';
        }
        word += character;
    }
    const bool isPlain = path.find_first_of(" \t\n\"'\\><~|&;$*?#()`") == std::string_view::npos;
    return escaped(isPlain ? word : '"' + word + '"');
}

} // namespace kippo
