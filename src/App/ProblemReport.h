#pragma once

#include "Support/Time.h"

#include <string>

namespace kippo {

class AgentStore;

/// What the program is and where it runs.
struct About {
    std::string version;        ///< such as "0.3.0"
    std::string system;         ///< the desktop and what draws on it, such as "Debian 12, KDE, xcb, Qt 6.4.2"
    std::string supportAddress; ///< of whoever packaged the program; may be empty
};

/// What a person sends when something does not work: how the agents are connected and what they do, in a few words. No
/// prompts, no folders, no addresses.
namespace ProblemReport {

/// `agents` may be null.
std::string text(const About& about, const AgentStore* agents, Date now);

/// A "mailto" URL for a letter with `text`. Without an address the letter has none either: it goes to nobody whom the
/// person did not choose.
std::string letter(const std::string& address, const std::string& text);

} // namespace ProblemReport

} // namespace kippo
