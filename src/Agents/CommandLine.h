#pragma once

#include "Agents/AgentModels.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a command line of the process table runs. The table gives one text with spaces between the arguments, so an
/// argument that holds spaces looks like several; everything here is a reading of the first few words.
namespace kippo::CommandLine {

/// The first `limit` words.
std::vector<std::string_view> firstWords(std::string_view command, std::size_t limit);

/// The last path component of the first word, in small letters.
std::string programName(std::string_view command);

/// Who runs the program that a command line is about.
enum class Runner : std::uint8_t {
    none,           ///< nobody: the first word is the program
    interpreter,    ///< node, python and the like, with a script
    packageRunner,  ///< npx, uv and the like, with a package or a command
    shellOrScripter ///< sh, perl and the like, with a script
};

/// A command line seen through the interpreter or package runner in front of it.
struct Launch {
    Runner runner = Runner::none;
    std::string_view program;                ///< path, script, module or package; empty when there is none
    std::vector<std::string_view> arguments; ///< the first few that follow the program
};
Launch launch(std::string_view command);

/// The name of the program that a command line is about: the interpreter's script where one runs ("node /opt/bin/qwen"
/// is "qwen"), else as `programName`. In small letters.
std::string launchedName(std::string_view command);

/// The agent whose own program, script or package `launch` runs as a session of its own; nothing for an agent's helpers
/// (servers, daemons, set-up commands) and for every other program, whatever its arguments name.
std::optional<AgentKind> sessionOf(const Launch& launch);

/// Whether `launch` runs a program of an agent at all, a session or a helper.
bool runsAgent(const Launch& launch);

} // namespace kippo::CommandLine
