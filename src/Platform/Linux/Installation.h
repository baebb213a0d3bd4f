#pragma once

#include <optional>
#include <string>

/// Where the application is, and whether it could show itself.
namespace kippo::Installation {

/// The application's executable: beside the running one in its install or build tree
/// (`../libexec/kippo/kippo-app` from its own folder, links resolved), else `installed`. Nothing when neither can be
/// run.
std::optional<std::string> applicationPath(const std::string& installed);

/// Whether the environment names an X or Wayland display.
bool hasDisplay();

} // namespace kippo::Installation
