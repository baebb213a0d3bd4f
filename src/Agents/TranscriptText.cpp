// The text functions of TranscriptWatcher: what a reply or a prompt comes down to in one line, and ISO 8601 times.

#include "Agents/TranscriptWatcher.h"
#include "Support/Text.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace kippo {

namespace {

/// How many bytes of white space `text` begins with, at most one character. Control characters count: they would only
/// do harm in a line that is shown.
std::size_t whiteSpaceLength(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    if (first <= 0x20 || first == 0x7F) {
        return 1;
    }
    if (first < 0xC2 || first > 0xE3) {
        return 0;
    }
    constexpr std::array<std::string_view, 7> wide{"\u0085", "\u00A0", "\u2028", "\u2029",
                                                   "\u202F", "\u205F", "\u3000"};
    for (const auto space : wide) {
        if (text.starts_with(space)) {
            return space.size();
        }
    }
    // U+2000 to U+200A, the typographic spaces.
    const bool typographic = text.starts_with("\xE2\x80") && text.size() > 2 &&
                             static_cast<unsigned char>(text[2]) >= 0x80 && static_cast<unsigned char>(text[2]) <= 0x8A;
    return typographic ? 3 : 0;
}

std::string withoutControls(std::string_view text) {
    std::string result{text};
    std::ranges::replace_if(result, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
    return result;
}

std::vector<std::string_view> trimmedLines(std::string_view text) {
    auto lines = Text::split(text, '\n');
    for (auto& line : lines) {
        line = Text::trimmed(line);
    }
    std::erase(lines, std::string_view{});
    return lines;
}

std::string_view withoutLeading(std::string_view text, std::string_view marks) {
    text.remove_prefix(std::min(text.find_first_not_of(marks), text.size()));
    return text;
}

/// What follows `marker` (in small letters) at the start of `line`; nothing when the line does not begin with it.
/// Agents like to write the marker in bold.
std::optional<std::string_view> afterMarker(std::string_view line, std::string_view marker) {
    constexpr std::string_view emphasis = "*_";
    const auto plain = withoutLeading(line, emphasis);
    if (Text::lowered(plain.substr(0, marker.size())) != marker) {
        return std::nullopt;
    }
    const auto rest = plain.substr(marker.size());
    return Text::trimmed(plain.size() < line.size() ? withoutLeading(rest, emphasis) : rest);
}

/// The text after the last line that begins with `marker` and says something.
std::optional<std::string> lastMarked(const std::vector<std::string_view>& lines, std::string_view marker) {
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        if (const auto rest = afterMarker(*line, marker); rest && !rest->empty()) {
            return withoutControls(*rest);
        }
    }
    return std::nullopt;
}

bool isWord(std::string_view text, std::size_t at) {
    if (at >= text.size()) {
        return false;
    }
    const auto c = static_cast<unsigned char>(text[at]);
    return c >= 0x80 || (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z');
}

bool isBlank(std::string_view text, std::size_t at) { return at >= text.size() || text[at] == ' '; }

/// Without the marks of bold, italic, struck and code text. A star between blanks is a product and an underscore inside
/// a word a name: they stay.
std::string withoutEmphasis(std::string_view line) {
    std::string plain;
    for (std::size_t at = 0; at < line.size();) {
        const char mark = line[at];
        const auto end = std::min(line.find_first_not_of(mark, at), line.size());
        const bool atEdge = !isBlank(line, at - 1) || !isBlank(line, end);
        const bool inWord = at > 0 && isWord(line, at - 1) && isWord(line, end);
        const bool emphasis = mark == '`' || (mark == '~' && end - at == 2) || (mark == '*' && atEdge) ||
                              (mark == '_' && atEdge && !inWord);
        if (!emphasis) {
            plain.append(line, at, end - at);
        }
        at = end;
    }
    return plain;
}

/// A line across the text, or another that says nothing once its marks are gone.
bool isRule(std::string_view line) { return line.find_first_not_of("*_-=~` ") == std::string_view::npos; }

/// Reads `count` digits at `at` and moves it behind them; -1 when there are fewer.
int digits(std::string_view text, std::size_t& at, std::size_t count) {
    if (text.size() - at < count) {
        return -1;
    }
    int value = 0;
    for (const std::size_t end = at + count; at < end; ++at) {
        if (text[at] < '0' || text[at] > '9') {
            return -1;
        }
        value = value * 10 + (text[at] - '0');
    }
    return value;
}

bool take(std::string_view text, std::size_t& at, char wanted) {
    if (at >= text.size() || text[at] != wanted) {
        return false;
    }
    ++at;
    return true;
}

/// The fraction after a decimal point, if there is one; negative when the point stands alone.
double fraction(std::string_view text, std::size_t& at) {
    if (!take(text, at, '.')) {
        return 0;
    }
    double value = 0;
    double place = 0.1;
    const auto start = at;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at, place /= 10) {
        value += place * (text[at] - '0');
    }
    return at == start ? -1 : value;
}

/// "Z", "+02:00" or "-0530" in seconds east of UTC; it must end the text.
std::optional<int> zone(std::string_view text, std::size_t at) {
    if (text.substr(at) == "Z") {
        return 0;
    }
    const bool east = take(text, at, '+');
    if (!east && !take(text, at, '-')) {
        return std::nullopt;
    }
    const int hours = digits(text, at, 2);
    take(text, at, ':');
    const int minutes = digits(text, at, 2);
    if (hours < 0 || hours > 23 || minutes < 0 || minutes > 59 || at != text.size()) {
        return std::nullopt;
    }
    return (east ? 1 : -1) * (hours * 3600 + minutes * 60);
}

} // namespace

std::optional<std::string> TranscriptWatcher::oneLine(std::string_view text) {
    std::string line;
    bool gap = false;
    for (std::size_t at = 0; at < text.size();) {
        if (const auto space = whiteSpaceLength(text.substr(at))) {
            gap = !line.empty();
            at += space;
            continue;
        }
        if (gap) {
            line.push_back(' ');
            gap = false;
        }
        line.push_back(text[at++]);
    }
    if (line.empty()) {
        return std::nullopt;
    }
    return Text::shortened(line, 200, 199);
}

std::optional<std::string> TranscriptWatcher::summary(std::optional<std::string_view> text) {
    if (!text) {
        return std::nullopt;
    }
    const auto lines = trimmedLines(*text);
    if (auto done = lastMarked(lines, "done:")) {
        return done;
    }
    for (const auto line : lines) {
        if (!line.starts_with('#') && !line.starts_with("```") && !isRule(line)) {
            return Text::shortened(withoutControls(Text::trimmed(withoutEmphasis(line))), 120, 117);
        }
    }
    return std::nullopt;
}

std::optional<std::string> TranscriptWatcher::needsYouMarker(std::optional<std::string_view> text) {
    // The last such line decides, also when it asks for nothing.
    const auto lines = trimmedLines(text.value_or(std::string_view{}));
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        if (const auto rest = afterMarker(*line, "needs you:")) {
            return rest->empty() ? std::nullopt : std::optional{withoutControls(*rest)};
        }
    }
    return std::nullopt;
}

std::optional<Date> TranscriptWatcher::date(std::string_view text) {
    std::size_t at = 0;
    const int year = digits(text, at, 4);
    const bool dashed = take(text, at, '-');
    const int month = digits(text, at, 2);
    const bool dashedTwice = take(text, at, '-');
    const int day = digits(text, at, 2);
    const bool split = take(text, at, 'T');
    const int hour = digits(text, at, 2);
    const bool colon = take(text, at, ':');
    const int minute = digits(text, at, 2);
    const bool colonTwice = take(text, at, ':');
    const int second = digits(text, at, 2);
    const double part = fraction(text, at);
    const auto offset = zone(text, std::min(at, text.size()));
    if (!dashed || !dashedTwice || !split || !colon || !colonTwice || !offset || part < 0 || hour < 0 || hour > 23 ||
        minute < 0 || minute > 59 || second < 0 || second > 60) {
        return std::nullopt;
    }
    const std::chrono::year_month_day ymd{std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
                                          std::chrono::day{static_cast<unsigned>(day)}};
    if (year < 0 || month < 0 || day < 0 || !ymd.ok()) {
        return std::nullopt;
    }
    const double days = static_cast<double>(std::chrono::sys_days{ymd}.time_since_epoch().count());
    return dateFromUnix(days * 86400 + hour * 3600 + minute * 60 + second + part - *offset);
}

} // namespace kippo
