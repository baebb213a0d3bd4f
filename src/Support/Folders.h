#pragma once

#include <string>

namespace kippo {

/// Makes `folder` and what lacks above it, for the user alone (mode 0700). What is there already keeps its mode;
/// failure shows when the folder is used.
void makeFolders(std::string folder);

} // namespace kippo
