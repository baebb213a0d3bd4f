#include "App/Terminal/TerminalText.h"

#include "Support/Text.h"

#include <algorithm>
#include <utf8proc.h>

namespace kippo::Terminal {

namespace {

bool isBlank(utf8proc_int32_t value) {
    return value == ' ' || (value >= '\t' && value <= '\r') || value == 0x85 || value == 0x2028 || value == 0x2029;
}

/// Overrides and isolates of the writing direction could make a row say something else than it holds.
bool turnsDirection(utf8proc_int32_t value) {
    return (value >= 0x202A && value <= 0x202E) || (value >= 0x2066 && value <= 0x2069) || value == 0x200E ||
           value == 0x200F || value == 0x061C;
}

bool isControl(utf8proc_int32_t value) { return value < 0x20 || (value >= 0x7F && value < 0xA0); }

/// The columns of one character. A terminal draws an emoji of several code points in the cells of its widest.
int columnsOfCharacter(std::string_view character) {
    constexpr utf8proc_int32_t emojiStyle = 0xFE0F;
    constexpr utf8proc_int32_t firstFlagLetter = 0x1F1E6;
    constexpr utf8proc_int32_t lastFlagLetter = 0x1F1FF;
    int columns = 0;
    int flagLetters = 0;
    while (!character.empty()) {
        const auto [value, bytes] = Text::firstCodePoint(character);
        flagLetters += value >= firstFlagLetter && value <= lastFlagLetter ? 1 : 0;
        columns = std::max(columns, value == emojiStyle ? 2 : utf8proc_charwidth(value));
        character.remove_prefix(bytes);
    }
    return flagLetters == 2 ? 2 : columns;
}

} // namespace

std::string plainText(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto [value, bytes] = Text::firstCodePoint(text);
        if (value >= 0 && isBlank(value)) {
            if (!result.empty() && result.back() != ' ') {
                result += ' ';
            }
        } else if (value < 0 || isControl(value) || turnsDirection(value)) {
            result += Text::replacement;
        } else {
            result += text.substr(0, bytes);
        }
        text.remove_prefix(bytes);
    }
    if (result.ends_with(' ')) {
        result.pop_back();
    }
    return result;
}

std::string visibleText(std::string_view line) {
    std::string result;
    for (std::size_t at = 0; at < line.size();) {
        const auto end = std::min(line.find_first_of(" \t", at), line.size());
        result += plainText(line.substr(at, end - at));
        at = end;
        for (; at < line.size() && (line[at] == ' ' || line[at] == '\t'); ++at) {
            result += line[at];
        }
    }
    return result;
}

int columnsOf(std::string_view text) {
    int columns = 0;
    while (!text.empty()) {
        const auto character = Text::prefix(text, 1);
        columns += columnsOfCharacter(character);
        text.remove_prefix(character.size());
    }
    return columns;
}

std::string fitted(std::string_view text, int columns) {
    std::size_t kept = 0; // bytes that leave room for the ellipsis
    int used = 0;
    for (std::size_t end = 0; end < text.size();) {
        const auto character = Text::prefix(text.substr(end), 1);
        used += columnsOfCharacter(character);
        end += character.size();
        if (used > columns) {
            return columns > 0 ? std::string{text.substr(0, kept)} + "…" : std::string{};
        }
        if (used < columns) {
            kept = end;
        }
    }
    return std::string{text};
}

} // namespace kippo::Terminal
