#pragma once

#include "Support/ProcessRunner.h"

#include <string>

/// What git knows of a folder that could be thrown away.
namespace kippo::GitKeeps {

/// Whether `name`, a folder below `project` (absolute), holds what cannot be had again by building: files that git
/// tracks there (an empty folder's placeholder aside), a repository of its own, or another branch's working tree with
/// changes that are not committed. True as well when there is a repository that git cannot tell about; false without
/// one. Blocking: may run git.
bool somethingIn(const std::string& project, const std::string& name, ProcessRunner& runner);

} // namespace kippo::GitKeeps
