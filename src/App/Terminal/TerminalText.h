#pragma once

#include <string>
#include <string_view>

/// Strangers' text in a terminal: prompts, folder names and command lines may hold anything.
namespace kippo::Terminal {

/// `text` on one line and harmless: white space becomes single blanks, control characters (and with them escape
/// sequences), marks that turn the writing direction, and bytes that are not UTF-8 become U+FFFD.
std::string plainText(std::string_view text);

/// The same for a line whose blanks matter: they stay, tabs too.
std::string visibleText(std::string_view line);

/// The columns that `text`, harmless already, takes in a terminal: 2 for wide East Asian characters and emoji, 0 for
/// combining marks.
int columnsOf(std::string_view text);

/// `text` when it takes at most `columns`, else as much of it as fits before "…". Never cuts a character in two.
std::string fitted(std::string_view text, int columns);

} // namespace kippo::Terminal
