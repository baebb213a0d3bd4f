#pragma once

#include "App/Terminal/Arguments.h"

#include <span>
#include <string>
#include <string_view>

namespace kippo::Terminal {

/// The flag by which the shells' completions ask for words; behind it come those typed so far, the last one unfinished.
inline constexpr std::string_view completionFlag = "--complete";

/// The line that stands for the names of folders, which the shells find themselves.
inline constexpr std::string_view folderLine = ":folder";

/// What may stand in place of the last of `typed`, the words behind the program's name: a line each with the word, a
/// tab and what it does. Read off the help texts, so that people and shells are told the same.
std::string completions(std::span<const std::string_view> typed, std::span<const Command> commands);

} // namespace kippo::Terminal
