#pragma once

#include <string>

namespace kippo {

/// Where things are on this machine, for one user. Taken from the environment once, by the composition root.
struct Places {
    std::string home;          ///< the user's home folder, no trailing slash
    std::string supportFolder; ///< Kippo's own folder, `$XDG_DATA_HOME/Kippo` on Linux; may not exist yet
    std::string configFolder;  ///< the folder of `defaults.json`, `$XDG_CONFIG_HOME/Kippo` on Linux; may not exist yet
    std::string dataFolder;    ///< where all programs keep the user's data, `$XDG_DATA_HOME` on Linux; has the Trash
    std::string cacheFolder;   ///< where all programs keep what they can fetch again, `$XDG_CACHE_HOME` on Linux

    /// The log to which hooks append and which the agent store reads.
    std::string eventLog() const { return supportFolder + "/agent-events.jsonl"; }

    /// From HOME, XDG_DATA_HOME, XDG_CONFIG_HOME and XDG_CACHE_HOME; relative XDG values are ignored, as that standard
    /// asks. Without HOME every path that would lie in it is empty.
    static Places fromEnvironment();
};

} // namespace kippo
