#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kippo::Terminal {

/// Where text goes.
struct Style {
    int width = 0; ///< columns of the terminal; 0 when nothing limits a line, as in a pipe
    bool colour = false;

    bool operator==(const Style&) const = default;
};

/// How a piece of text stands out; nothing does without `Style::colour`.
enum class Tone { plain, faint, needsYou, working, done, bad };

/// `text` in the tone's colour, or as it is.
std::string toned(std::string_view text, Tone tone, const Style& style);

/// Aligned columns that fit the terminal. Texts are made harmless on their way in.
class TextTable {
public:
    struct Column {
        std::string heading;
        bool alignRight = false;
        int minimum = 0;  ///< how narrow it may be made where the room is scarce; 0: never narrower than its texts
        int dropRank = 0; ///< columns of the highest rank are left out first where that is not enough; 0: never
    };
    struct Cell {
        std::string text;
        Tone tone = Tone::plain;
    };

    explicit TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// One row, a cell for each column.
    void add(std::vector<Cell> row);

    /// The heading and the rows, each line with its line feed. Columns without any text are left out.
    std::string render(const Style& style) const;

private:
    struct Placed {
        std::size_t column;
        int width;
    };

    /// The width of the column's widest text and heading; 0 for a column without any text.
    int naturalWidth(std::size_t column) const;
    /// `placed` with those columns that may be made narrower, from the left, until all fit.
    std::vector<Placed> narrowed(std::vector<Placed> placed, int width) const;
    /// The columns to show and their widths.
    std::vector<Placed> place(int width) const;
    std::string line(const std::vector<Cell>& row, const std::vector<Placed>& placed, const Style& style) const;

    std::vector<Column> columns_;
    std::vector<std::vector<Cell>> rows_;
};

} // namespace kippo::Terminal
