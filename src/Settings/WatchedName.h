#pragma once

#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace kippo {

/// The program name that `typed` means, ready to be watched: without white space around it and without its folder.
/// Otherwise the sentence that says why it cannot be added to `watched`.
std::expected<std::string, std::string> watchedName(std::string_view typed, const std::vector<std::string>& watched);

} // namespace kippo
