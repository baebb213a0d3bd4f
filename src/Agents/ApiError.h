#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kippo {

/// What an agent wrote down of a failed request, as one line: the service's own sentence where its whole JSON answer
/// stands for it. Nothing when there are no words.
std::optional<std::string> apiErrorLine(std::string_view text);

} // namespace kippo
