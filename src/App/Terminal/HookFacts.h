#pragma once

#include "Agents/AgentModels.h"
#include "Agents/HookInstallation.h"
#include "App/Terminal/TextTable.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kippo::Terminal {

/// One agent's hooks on this machine.
struct HookFacts {
    enum class Connection {
        none,
        partial, ///< entries of Kippo are there, but not exactly one for each event
        complete,
        unreadable ///< the settings file is none that Kippo would edit
    };

    HookAgent agent = HookAgent::claude;
    bool isPresent = false;             ///< the agent is on this machine
    std::optional<std::string> program; ///< where on the PATH, if it is there
    std::string file;                   ///< its settings file, absolute
    Connection connection = Connection::none;
    std::string error;                    ///< of `unreadable`: the sentence for the user
    std::vector<std::string> executables; ///< what Kippo's entries start, each once
    std::string missing;                  ///< one of them that is not there
    std::optional<Date> lastEvent;        ///< the proof that they work

    /// What entries of Kippo start in place of `executable`, one that is not there first; empty when nothing.
    std::string another(std::string_view executable) const;
};

/// All agents, in listing order. `lastEvents` are the dates of what arrived.
std::vector<HookFacts> hookFacts(const HookBridge::SettingsHome& home, const std::map<HookAgent, Date>& lastEvents);

/// The program that a hook's command line starts: its first word as a shell reads it.
std::string programOf(std::string_view command);

/// `path` as people write it: "~" for the home folder.
std::string tilde(std::string_view path, std::string_view home);

/// The table for a person, and below it a sentence for each thing that is not as it should be.
std::string hookTable(const std::vector<HookFacts>& agents, std::string_view executable, std::string_view home,
                      Date now, const Style& style);

/// The same as one JSON object on one line, without line feed. docs/terminal.md describes its keys.
std::string hookJson(const std::vector<HookFacts>& agents, std::string_view executable);

} // namespace kippo::Terminal
