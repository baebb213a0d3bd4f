#include "App/Terminal/SessionList.h"

#include "Support/Text.h"

#include <algorithm>
#include <fmt/format.h>

namespace kippo::Terminal {

namespace {

constexpr std::string_view nobody =
    "No agent is at work here. Start one in any terminal, and it shows up in this list.\n";

struct StatusWord {
    std::string_view word;
    Tone tone;
};

StatusWord statusWord(AgentStatus::Case status) {
    switch (status) {
    case AgentStatus::Case::needsYou:
        return {"● Needs you", Tone::needsYou};
    case AgentStatus::Case::working:
        return {"● Working", Tone::working};
    case AgentStatus::Case::done:
        return {"● Done", Tone::done};
    case AgentStatus::Case::idle:
        return {"○ Idle", Tone::faint};
    }
    return {};
}

std::string portsText(const std::vector<int>& ports) {
    std::string result;
    for (const int port : ports) {
        result += fmt::format("{}:{}", result.empty() ? "" : " ", port);
    }
    return result;
}

std::vector<TextTable::Cell> sessionRow(const AgentSession& session, Date now) {
    const auto [word, tone] = statusWord(session.status.value);
    const bool runs = session.rootPID.has_value();
    return {
        {std::string{word}, tone},
        {session.sentence(true), session.status.isNeedsYou() ? Tone::needsYou : Tone::plain},
        {session.title(), Tone::plain},
        {session.project(), Tone::plain},
        {session.timeline(now), Tone::faint},
        {runs ? Formatters::memory(session.memoryKB) : "", Tone::faint},
        {runs ? fmt::format("{:.0f}%", session.cpu) : "", Tone::faint},
        {portsText(session.ports), Tone::faint},
    };
}

std::string sessions(const std::vector<AgentSession>& list, Date now, const Style& style) {
    TextTable table{{{.heading = "STATUS"},
                     {.heading = "WHAT", .minimum = 24},
                     {.heading = "AGENT", .minimum = 11, .dropRank = 2},
                     {.heading = "PROJECT", .minimum = 10},
                     {.heading = "TIME", .dropRank = 1},
                     {.heading = "MEMORY", .alignRight = true, .dropRank = 4},
                     {.heading = "CPU", .alignRight = true, .dropRank = 5},
                     {.heading = "PORTS", .minimum = 5, .dropRank = 3}}};
    for (const auto& session : list) {
        table.add(sessionRow(session, now));
    }
    return table.render(style);
}

std::string leftRunning(const std::vector<DetachedProcess>& list, const Style& style) {
    TextTable table{{{.heading = "LEFT RUNNING", .minimum = 14},
                     {.heading = "PROJECT", .minimum = 10, .dropRank = 1},
                     {.heading = "FOR", .dropRank = 2},
                     {.heading = "MEMORY", .alignRight = true, .dropRank = 3},
                     {.heading = "PID", .alignRight = true},
                     {.heading = "PORTS", .minimum = 5, .dropRank = 1}}};
    for (const auto& [proc, cwd, ports] : list) {
        table.add({{proc.friendlyName(), Tone::plain},
                   {cwd ? std::string{Text::lastPathComponent(*cwd)} : "", Tone::plain},
                   {Formatters::friendlyDuration(proc.uptime), Tone::faint},
                   {Formatters::memory(proc.rssKB), Tone::faint},
                   {fmt::format("{}", proc.pid), Tone::faint},
                   {portsText(ports), Tone::faint}});
    }
    return table.render(style);
}

} // namespace

std::string sessionTable(const SessionList& list, Date now, const Style& style) {
    std::string text = list.sessions.empty() ? std::string{nobody} : sessions(list.sessions, now, style);
    if (!list.detached.empty()) {
        text += "\n" + leftRunning(list.detached, style);
    }
    return text;
}

std::string firstLines(const std::string& text, int height) {
    const auto lines = std::ranges::count(text, '\n');
    if (lines <= height) {
        return text;
    }
    std::size_t end = 0;
    for (int line = 1; line < height; ++line) {
        end = text.find('\n', end) + 1;
    }
    return text.substr(0, end) + fmt::format("… and {} lines more\n", lines - std::max(height - 1, 0));
}

} // namespace kippo::Terminal
