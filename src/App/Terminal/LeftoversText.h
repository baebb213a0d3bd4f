#pragma once

#include "Agents/AgentModels.h"
#include "App/Terminal/TextTable.h"

#include <string>
#include <string_view>
#include <vector>

namespace kippo::Terminal {

/// The leftovers for a person: a table and their sum, or "Nothing big found."
std::string leftoversText(const std::vector<Leftover>& leftovers, std::string_view home, const Style& style);

/// The same as one JSON object on one line, without line feed. docs/terminal.md describes its keys.
std::string leftoversJson(const std::vector<Leftover>& leftovers);

} // namespace kippo::Terminal
