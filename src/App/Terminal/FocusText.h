#pragma once

#include <optional>
#include <string>

namespace kippo::Terminal {

/// The focus timer for a person, in two lines, from the JSON object that the application gives. Nothing when that is
/// none.
std::optional<std::string> focusText(std::string json);

} // namespace kippo::Terminal
