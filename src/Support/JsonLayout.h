#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kippo::Json {

/// How a text is laid out: what ends its lines and what a level is indented by.
struct Layout {
    std::string lineEnd = "\n";
    std::string unit = "  ";

    /// The layout of a JSON object's text: its first line ending, the indentation of its first member; two spaces where
    /// nothing shows.
    static Layout of(std::string_view text);
};

/// A valid JSON text laid out anew over several lines; strings and numbers keep their bytes. `indentation` goes before
/// every line but the first. Empty objects and lists stay on their line.
std::string overLines(std::string_view json, const Layout& layout, std::string_view indentation = {});

/// The same on one line, with a blank after each colon and comma.
std::string onOneLine(std::string_view json);

/// The blanks at the start of the line in which `offset` lies.
std::string_view indentationAt(std::string_view text, std::size_t offset);

/// Whether only blanks stand before `offset` in its line.
bool beginsLine(std::string_view text, std::size_t offset);

} // namespace kippo::Json
