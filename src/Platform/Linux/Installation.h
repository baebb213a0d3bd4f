#pragma once

#include <optional>
#include <string>

/// Where the application is, and whether it could show itself.
namespace kippo::Installation {

/// The running executable, links resolved; empty when that cannot be told.
std::string executablePath();

/// Whether an executable lies in a build tree, which somebody may delete at any time.
bool isInBuildTree(const std::string& executable);

/// The application's executable: beside the running one in its install or build tree
/// (`../libexec/kippo/kippo-app` from its own folder, links resolved), else `installed`. Nothing when neither can be
/// run.
std::optional<std::string> applicationPath(const std::string& installed);

/// The program that agents run as their hook, links resolved: `kippo`, which lies in the install or build tree of the
/// running application (`../../bin/kippo` from its folder), else `installed`. Nothing when neither can be run.
std::optional<std::string> hookExecutable(const std::string& installed);

/// Whether the environment names an X or Wayland display.
bool hasDisplay();

} // namespace kippo::Installation
