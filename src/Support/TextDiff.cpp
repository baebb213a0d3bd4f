#include "Support/TextDiff.h"

#include <algorithm>
#include <iterator>
#include <span>

#include <fmt/format.h>

namespace kippo {

namespace {

/// Beyond so many differing lines the whole stretch counts as replaced; the search takes their square in memory.
constexpr std::ptrdiff_t mostDifferences = 600;

/// The lines with their line feeds.
std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

using Lines = std::vector<std::string_view>;

/// A line of either text, or of both.
struct Step {
    char mark;
    std::string_view line;
};

/// Myers' shortest edit script. `reach[k]` is how far into `a` a path on diagonal k (place in `a` less place in `b`)
/// has come; one such row is kept for each number of differences, to find the way back.
class ShortestEdit {
public:
    ShortestEdit(std::span<const std::string_view> a, std::span<const std::string_view> b) : a_(a), b_(b) {}

    std::vector<Step> steps() {
        const auto most = std::min<std::ptrdiff_t>(std::ssize(a_) + std::ssize(b_), mostDifferences);
        std::vector<std::ptrdiff_t> reach(static_cast<std::size_t>(2 * most + 3), 0);
        middle_ = most + 1;
        for (std::ptrdiff_t differences = 0; differences <= most; ++differences) {
            rows_.push_back(reach);
            for (auto diagonal = -differences; diagonal <= differences; diagonal += 2) {
                const auto x = slide(start(reach, diagonal, differences), diagonal);
                at(reach, diagonal) = x;
                if (x >= std::ssize(a_) && x - diagonal >= std::ssize(b_)) {
                    return wayBack(differences);
                }
            }
        }
        return replaced();
    }

private:
    using Row = std::vector<std::ptrdiff_t>;

    std::ptrdiff_t& at(Row& row, std::ptrdiff_t diagonal) const {
        return row[static_cast<std::size_t>(middle_ + diagonal)];
    }
    bool comesFromAbove(Row& row, std::ptrdiff_t diagonal, std::ptrdiff_t differences) const {
        return diagonal == -differences || (diagonal != differences && at(row, diagonal - 1) < at(row, diagonal + 1));
    }
    std::ptrdiff_t start(Row& row, std::ptrdiff_t diagonal, std::ptrdiff_t differences) const {
        return comesFromAbove(row, diagonal, differences) ? at(row, diagonal + 1) : at(row, diagonal - 1) + 1;
    }
    std::ptrdiff_t slide(std::ptrdiff_t x, std::ptrdiff_t diagonal) const {
        while (x < std::ssize(a_) && x - diagonal < std::ssize(b_) &&
               a_[static_cast<std::size_t>(x)] == b_[static_cast<std::size_t>(x - diagonal)]) {
            ++x;
        }
        return x;
    }

    std::vector<Step> wayBack(std::ptrdiff_t differences) {
        std::vector<Step> steps;
        auto x = std::ssize(a_);
        auto y = std::ssize(b_);
        for (; differences >= 0; --differences) {
            Row& row = rows_[static_cast<std::size_t>(differences)];
            const auto diagonal = x - y;
            const bool added = comesFromAbove(row, diagonal, differences);
            const auto from = differences == 0 ? 0 : start(row, diagonal, differences);
            while (x > from && y > from - diagonal) {
                steps.push_back({' ', a_[static_cast<std::size_t>(--x)]});
                --y;
            }
            if (differences > 0) {
                steps.push_back(added ? Step{'+', b_[static_cast<std::size_t>(--y)]}
                                      : Step{'-', a_[static_cast<std::size_t>(--x)]});
            }
        }
        std::ranges::reverse(steps);
        return steps;
    }

    std::vector<Step> replaced() const {
        std::vector<Step> steps;
        for (const auto line : a_) {
            steps.push_back({'-', line});
        }
        for (const auto line : b_) {
            steps.push_back({'+', line});
        }
        return steps;
    }

    std::span<const std::string_view> a_;
    std::span<const std::string_view> b_;
    std::vector<Row> rows_;
    std::ptrdiff_t middle_ = 0;
};

std::vector<Step> editScript(const Lines& a, const Lines& b) {
    const auto shorter = std::min(a.size(), b.size());
    std::size_t head = 0;
    while (head < shorter && a[head] == b[head]) {
        ++head;
    }
    std::size_t tail = 0;
    while (tail < shorter - head && a[a.size() - 1 - tail] == b[b.size() - 1 - tail]) {
        ++tail;
    }
    std::vector<Step> steps;
    for (std::size_t i = 0; i < head; ++i) {
        steps.push_back({' ', a[i]});
    }
    const auto changed = ShortestEdit{std::span{a}.subspan(head, a.size() - head - tail),
                                      std::span{b}.subspan(head, b.size() - head - tail)}
                             .steps();
    steps.insert(steps.end(), changed.begin(), changed.end());
    for (std::size_t i = a.size() - tail; i < a.size(); ++i) {
        steps.push_back({' ', a[i]});
    }
    return steps;
}

/// "3,7": the first line, counted from 1, and how many; an empty range names the line before it.
std::string range(std::size_t linesBefore, std::size_t count) {
    return count == 1 ? fmt::format("{}", linesBefore + 1)
                      : fmt::format("{},{}", linesBefore + (count == 0 ? 0 : 1), count);
}

DiffLine asRead(const Step& step) {
    const bool ended = step.line.ends_with('\n');
    return {step.mark, std::string{step.line.substr(0, step.line.size() - (ended ? 1 : 0))}, !ended};
}

} // namespace

std::vector<DiffLine> diffLines(std::string_view before, std::string_view after, std::size_t context) {
    const auto steps = editScript(linesOf(before), linesOf(after));
    const auto isChange = [](const Step& step) { return step.mark != ' '; };
    std::vector<DiffLine> lines;
    std::size_t oldLine = 0;
    std::size_t newLine = 0;
    auto at = steps.begin();
    const auto pass = [&](auto end) {
        for (; at != end; ++at) {
            oldLine += at->mark != '+' ? 1 : 0;
            newLine += at->mark != '-' ? 1 : 0;
        }
    };
    for (auto change = std::find_if(at, steps.end(), isChange); change != steps.end();
         change = std::find_if(at, steps.end(), isChange)) {
        pass(change - std::min<std::ptrdiff_t>(change - at, static_cast<std::ptrdiff_t>(context)));
        auto end = change;
        for (auto next = change; next != steps.end() && next - end <= static_cast<std::ptrdiff_t>(2 * context);
             next = std::find_if(end, steps.end(), isChange)) {
            end = std::find_if_not(next, steps.end(), isChange);
        }
        end += std::min<std::ptrdiff_t>(steps.end() - end, static_cast<std::ptrdiff_t>(context));
        const auto hunk = lines.size();
        const auto oldStart = oldLine;
        const auto newStart = newLine;
        lines.push_back({'@', {}, false});
        std::transform(at, end, std::back_inserter(lines), asRead);
        pass(end);
        lines[hunk].text =
            fmt::format("-{} +{}", range(oldStart, oldLine - oldStart), range(newStart, newLine - newStart));
    }
    return lines;
}

std::string unifiedDiff(std::string_view before, std::string_view after, std::string_view beforeName,
                        std::string_view afterName) {
    const auto lines = diffLines(before, after);
    if (lines.empty()) {
        return {};
    }
    std::string text = fmt::format("--- {}\n+++ {}\n", beforeName, afterName);
    for (const auto& line : lines) {
        text += line.mark == '@' ? fmt::format("@@ {} @@\n", line.text) : fmt::format("{}{}\n", line.mark, line.text);
        text += line.endsAbruptly ? "\\ No newline at end of file\n" : "";
    }
    return text;
}

} // namespace kippo
