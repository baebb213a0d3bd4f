#pragma once

#include "Agents/AgentModels.h"
#include "Support/Places.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

/// The road from an agent's hook to the application: the hook mode of the executable turns the JSON object on standard
/// input into one line of the event log, and the agent store reads it back.
namespace kippo::HookBridge {

inline constexpr std::string_view hookFlag = "--kippo-hook";
/// The flag of installs made under the application's earlier name.
inline constexpr std::string_view legacyHookFlag = "--varde-hook";

/// One line of the event log.
struct Event {
    Date time;
    std::string name;    ///< the agent's own name of the event
    std::string session; ///< empty when the line has none
    HookAgent agent = HookAgent::claude;
    std::optional<std::string> cwd;
    std::optional<std::string> message;
    std::optional<std::string> tool;
    std::optional<std::string> kind; ///< of a notification
    std::optional<std::string> status;
    std::optional<std::string> prompt;
    std::optional<std::string> detail;
    std::optional<std::string> reply;
    /// The agent that the hook's command line named when it was not Claude Code; the event is judged by its event
    /// names.
    std::optional<std::string> source;

    /// The agent whose names and meanings hold for this event: `source` where it names one, else `agent`.
    HookAgent judgedBy() const;

    bool operator==(const Event&) const = default;
};

/// Whether one of the arguments asks for hook mode.
bool isHookInvocation(std::span<char* const> arguments);

/// What follows "--agent"; empty when nothing does.
std::string_view agentName(std::span<char* const> arguments);

/// Hook mode: reads the agent's object from standard input and appends at most one line to the log. Never prints, never
/// fails, never waits longer than a second for its input.
void handleHookInvocation(std::span<char* const> arguments);

/// Reduces a hook's input to its log line, with the line feed; nothing when the input is not an object with an event
/// and a session. `agentName` is what follows "--agent" on the command line, or empty. The line is valid JSON and UTF-8
/// whatever the input holds.
std::optional<std::string> record(std::string_view input, std::string_view agentName, Date now);

/// The same for `size` bytes in a buffer that goes on for `Json::padding` bytes; they are lost.
std::optional<std::string> recordInPlace(char* text, std::size_t size, std::string_view agentName, Date now);

/// Reads one line of the log, without its line feed; nothing when it is no event.
std::optional<Event> parse(std::string_view line);

} // namespace kippo::HookBridge
