#include "App/Terminal/TextTable.h"

#include "App/Terminal/TerminalText.h"

#include <algorithm>
#include <cstddef>

namespace kippo::Terminal {

namespace {

constexpr int gap = 2;

std::string_view escapeOf(Tone tone) {
    switch (tone) {
    case Tone::plain:
        return {};
    case Tone::faint:
        return "\x1b[2m";
    case Tone::needsYou:
        return "\x1b[1;33m";
    case Tone::working:
        return "\x1b[36m";
    case Tone::done:
        return "\x1b[32m";
    case Tone::bad:
        return "\x1b[31m";
    }
    return {};
}

template <typename Placed> int totalWidth(const std::vector<Placed>& placed) {
    int total = placed.empty() ? 0 : -gap;
    for (const auto& [column, width] : placed) {
        total += width + gap;
    }
    return total;
}

} // namespace

std::string toned(std::string_view text, Tone tone, const Style& style) {
    const auto escape = style.colour ? escapeOf(tone) : std::string_view{};
    return escape.empty() || text.empty() ? std::string{text} : std::string{escape} + std::string{text} + "\x1b[0m";
}

void TextTable::add(std::vector<Cell> row) {
    row.resize(columns_.size());
    for (auto& cell : row) {
        cell.text = plainText(cell.text);
    }
    rows_.push_back(std::move(row));
}

int TextTable::naturalWidth(std::size_t column) const {
    int widest = 0;
    for (const auto& row : rows_) {
        widest = std::max(widest, columnsOf(row[column].text));
    }
    return widest == 0 ? 0 : std::max(widest, columnsOf(columns_[column].heading));
}

std::vector<TextTable::Placed> TextTable::narrowed(std::vector<Placed> placed, int width) const {
    int excess = totalWidth(placed) - width;
    for (auto& [column, current] : placed) {
        if (const int minimum = columns_[column].minimum; minimum > 0) {
            const int taken = std::clamp(excess, 0, std::max(current - minimum, 0));
            current -= taken;
            excess -= taken;
        }
    }
    return placed;
}

std::vector<TextTable::Placed> TextTable::place(int width) const {
    std::vector<Placed> wanted;
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        if (const int natural = naturalWidth(column); natural > 0) {
            wanted.push_back({column, natural});
        }
    }
    const auto rank = [this](const Placed& one) { return columns_[one.column].dropRank; };
    while (width > 0 && !wanted.empty()) {
        auto placed = narrowed(wanted, width);
        const auto least = std::ranges::max_element(wanted, {}, rank);
        if (totalWidth(placed) <= width || rank(*least) == 0) {
            return placed;
        }
        wanted.erase(least);
    }
    return wanted;
}

std::string TextTable::line(const std::vector<Cell>& row, const std::vector<Placed>& placed, const Style& style) const {
    std::string result;
    int room = style.width > 0 ? style.width : -1; // what a terminal too narrow for all columns still holds
    int pending = 0;                               // blanks that only a later text makes necessary
    for (const auto& [column, width] : placed) {
        const int allowed = room < 0 ? width : std::min(width, std::max(room - pending, 0));
        const auto text = fitted(row[column].text, allowed);
        const int used = columnsOf(text);
        const int blanks = std::max(width - used, 0);
        pending += columns_[column].alignRight ? blanks : 0;
        if (used > 0) {
            result.append(static_cast<std::size_t>(pending), ' ');
            result += toned(text, row[column].tone, style);
            room = room < 0 ? room : std::max(room - pending - used, 0);
            pending = 0;
        }
        pending += (columns_[column].alignRight ? 0 : blanks) + gap;
    }
    return result + "\n";
}

std::string TextTable::render(const Style& style) const {
    const auto placed = place(style.width);
    std::vector<Cell> headings;
    headings.reserve(columns_.size());
    for (const auto& column : columns_) {
        headings.push_back({column.heading, Tone::faint});
    }
    std::string result = line(headings, placed, style);
    for (const auto& row : rows_) {
        result += line(row, placed, style);
    }
    return result;
}

} // namespace kippo::Terminal
