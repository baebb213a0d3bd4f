#pragma once

#include "App/Terminal/Arguments.h"

namespace kippo::Terminal {

/// `kippo leftovers`: the big folders that agents' work left behind, and moving them to the Trash. Gives the exit
/// status.
int leftovers(const Request& request);

/// What `kippo leftovers --help` prints.
inline constexpr std::string_view leftoversHelp =
    "Dependencies, build output, caches and worktrees in folders your agents worked in. All of it can be built or\n"
    "fetched again. Folders of 10 MB or less are left out.\n"
    "\n"
    "  kippo leftovers                   list them, the largest first; measuring them may take a while\n"
    "  kippo leftovers --json            the same as one JSON object\n"
    "  kippo leftovers trash FOLDER…     move some of them to the Trash, from where a file manager puts them back\n";

} // namespace kippo::Terminal
