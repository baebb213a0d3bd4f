#pragma once

#include "Agents/UsageScanner.h"
#include "App/Terminal/TextTable.h"

#include <string>
#include <string_view>

namespace kippo::Terminal {

/// The usage for a person: today and the last five hours, a bar for each day of the week, today's projects; or a
/// sentence when nothing was used in the week.
std::string usageText(const UsageScanner::Report& report, std::string_view home, Date now, const Style& style);

/// The report as one JSON object on one line, without line feed. docs/terminal.md describes its keys.
std::string usageJson(const UsageScanner::Report& report, Date now);

/// US dollars: "$3.41"; "<$0.01" for what is less and not nothing.
std::string dollars(double amount);

} // namespace kippo::Terminal
