#include "App/Terminal/HookFacts.h"

#include "App/Terminal/JsonMembers.h"
#include "App/Terminal/TerminalText.h"
#include "Support/Text.h"

#include <algorithm>
#include <cstdlib>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kippo::Terminal {

namespace {

using Connection = HookFacts::Connection;

/// The names under which an agent's program is on the PATH.
std::vector<std::string_view> programNames(HookAgent agent) {
    switch (agent) {
    case HookAgent::claude:
        return {"claude"};
    case HookAgent::codex:
        return {"codex"};
    case HookAgent::cursor:
        return {"cursor-agent", "cursor"};
    case HookAgent::gemini:
        return {"gemini"};
    }
    return {};
}

std::optional<std::string> programOnPath(HookAgent agent) {
    const char* path = std::getenv("PATH");
    for (const auto name : programNames(agent)) {
        for (const auto folder : Text::split(path != nullptr ? path : "", ':')) {
            auto candidate = fmt::format("{}/{}", folder, name);
            struct stat state{};
            if (access(candidate.c_str(), X_OK) == 0 && stat(candidate.c_str(), &state) == 0 &&
                S_ISREG(state.st_mode)) {
                return candidate;
            }
        }
    }
    return std::nullopt;
}

/// The folder in which the agent keeps its settings is there, though perhaps not the file.
bool hasSettingsFolder(const std::string& file) {
    struct stat state{};
    const auto folder = file.substr(0, file.rfind('/'));
    return stat(folder.c_str(), &state) == 0 && S_ISDIR(state.st_mode);
}

void readSettings(const HookBridge::SettingsHome& home, HookFacts& facts) {
    const auto commands = HookBridge::ourCommands(home, facts.agent);
    if (!commands) {
        facts.connection = Connection::unreadable;
        facts.error = commands.error().description();
        return;
    }
    for (const auto& [event, list] : *commands) {
        for (const auto& command : list) {
            auto program = programOf(command);
            // Of a bare name the shell finds the program.
            if (program.contains('/') && access(program.c_str(), X_OK) != 0) {
                facts.missing = program;
            }
            if (std::ranges::find(facts.executables, program) == facts.executables.end()) {
                facts.executables.push_back(std::move(program));
            }
        }
    }
    if (!facts.executables.empty()) {
        facts.connection = HookBridge::isInstalled(home, facts.agent) ? Connection::complete : Connection::partial;
    }
}

std::string_view title(const HookFacts& facts) { return displayTitle(agentKind(facts.agent)); }

TextTable::Cell connectionCell(const HookFacts& facts, std::string_view executable) {
    switch (facts.connection) {
    case Connection::none:
        return {facts.isPresent ? "○ no" : "– not on this machine", Tone::faint};
    case Connection::partial:
        return {"● in part", Tone::needsYou};
    case Connection::unreadable:
        return {"● cannot tell", Tone::bad};
    case Connection::complete:
        break;
    }
    return !facts.another(executable).empty() ? TextTable::Cell{"● to another kippo", Tone::needsYou}
                                              : TextTable::Cell{"● yes", Tone::done};
}

TextTable::Cell provenCell(const HookFacts& facts) {
    if (facts.lastEvent) {
        return {"yes", Tone::done};
    }
    const bool isAwaited = facts.connection == Connection::partial || facts.connection == Connection::complete;
    return {isAwaited ? "not yet" : "", Tone::plain};
}

/// What a person should know of one agent beside the table; empty for most.
std::string remark(const HookFacts& facts, std::string_view executable) {
    switch (facts.connection) {
    case Connection::none:
        return {};
    case Connection::unreadable:
        return facts.error;
    case Connection::partial:
        return fmt::format("{} does not report all events. “kippo hooks install {}” completes its hooks.", title(facts),
                           rawValue(facts.agent));
    case Connection::complete:
        break;
    }
    if (const auto program = facts.another(executable); !program.empty()) {
        return fmt::format("{} reports through {}{}. “kippo hooks install {}” makes it this one.", title(facts),
                           program, program == facts.missing ? ", which is not there" : "", rawValue(facts.agent));
    }
    return {};
}

std::string_view connectionName(Connection connection) {
    switch (connection) {
    case Connection::none:
        return "none";
    case Connection::partial:
        return "partial";
    case Connection::complete:
        return "complete";
    case Connection::unreadable:
        return "unreadable";
    }
    return {};
}

} // namespace

std::string HookFacts::another(std::string_view executable) const {
    if (!missing.empty() && missing != executable) {
        return missing;
    }
    const auto found = std::ranges::find_if(executables, [&](const auto& one) { return one != executable; });
    return found != executables.end() ? *found : std::string{};
}

std::vector<HookFacts> hookFacts(const HookBridge::SettingsHome& home, const std::map<HookAgent, Date>& lastEvents) {
    std::vector<HookFacts> result;
    for (const auto agent : allHookAgents) {
        HookFacts facts;
        facts.agent = agent;
        facts.file = home.settingsFile(agent);
        facts.program = programOnPath(agent);
        facts.isPresent = facts.program.has_value() || hasSettingsFolder(facts.file);
        readSettings(home, facts);
        if (const auto found = lastEvents.find(agent); found != lastEvents.end()) {
            facts.lastEvent = found->second;
        }
        result.push_back(std::move(facts));
    }
    return result;
}

std::string programOf(std::string_view command) {
    std::string word;
    char quote = 0;
    for (std::size_t at = command.find_first_not_of(' '); at < command.size(); ++at) {
        const char c = command[at];
        if (quote != 0 && c == quote) {
            quote = 0;
        } else if (quote == 0 && (c == '\'' || c == '"')) {
            quote = c;
        } else if (quote != '\'' && c == '\\' && at + 1 < command.size()) {
            word += command[++at];
        } else if (quote == 0 && c == ' ') {
            break;
        } else {
            word += c;
        }
    }
    return word;
}

std::string tilde(std::string_view path, std::string_view home) {
    if (path == home && !home.empty()) {
        return "~";
    }
    const bool isInside = !home.empty() && path.starts_with(home) && path.substr(home.size()).starts_with('/');
    return isInside ? "~" + std::string{path.substr(home.size())} : std::string{path};
}

std::string hookTable(const std::vector<HookFacts>& agents, std::string_view executable, std::string_view home,
                      Date now, const Style& style) {
    TextTable table{{{.heading = "AGENT"},
                     {.heading = "CONNECTED", .minimum = 5},
                     {.heading = "PROVEN", .dropRank = 1},
                     {.heading = "LAST EVENT", .dropRank = 2},
                     {.heading = "SETTINGS", .minimum = 10, .dropRank = 3}}};
    std::string remarks;
    for (const auto& facts : agents) {
        const auto age =
            facts.lastEvent ? Formatters::friendlyDuration((now - *facts.lastEvent).count()) + " ago" : std::string{};
        table.add({{std::string{title(facts)}, facts.isPresent ? Tone::plain : Tone::faint},
                   connectionCell(facts, executable),
                   provenCell(facts),
                   {age, Tone::faint},
                   {tilde(facts.file, home), Tone::faint}});
        if (const auto text = plainText(remark(facts, executable)); !text.empty()) {
            remarks += text + "\n";
        }
    }
    const bool isAnyMissing = std::ranges::any_of(
        agents, [](const auto& facts) { return facts.isPresent && facts.connection == Connection::none; });
    if (isAnyMissing) {
        remarks += "“kippo hooks install” connects the agents that are on this machine.\n";
    }
    return table.render(style) + (remarks.empty() ? "" : "\n" + remarks);
}

std::string hookJson(const std::vector<HookFacts>& agents, std::string_view executable) {
    std::string text;
    Json::Writer writer{text};
    writer.beginObject();
    JsonMembers{writer}.text("executable", executable);
    JsonMembers{writer}.list("agents", agents, [&](const HookFacts& facts) {
        writer.beginObject();
        JsonMembers members{writer};
        members.text("agent", rawValue(facts.agent));
        members.text("title", title(facts));
        members.flag("present", facts.isPresent);
        members.flag("connected", facts.connection == Connection::complete);
        members.text("connection", connectionName(facts.connection));
        members.flag("proven", facts.lastEvent.has_value());
        members.date("lastEvent", facts.lastEvent);
        members.text("settings", facts.file);
        members.list("executables", facts.executables, [&](const std::string& one) { writer.string(one); });
        members.text("error", facts.error.empty() ? std::nullopt : std::optional<std::string_view>{facts.error});
        writer.endObject();
    });
    writer.endObject();
    return text;
}

} // namespace kippo::Terminal
