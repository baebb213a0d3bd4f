#include "App/ProblemReport.h"

#include "Agents/AgentStore.h"
#include "Support/Text.h"

#include <algorithm>
#include <fmt/format.h>

namespace kippo::ProblemReport {

namespace {

constexpr std::string_view subject = "Kippo problem";
constexpr std::size_t longestName = 40;

std::string_view word(AgentStatus::Case status) {
    switch (status) {
    case AgentStatus::Case::needsYou:
        return "Needs you";
    case AgentStatus::Case::working:
        return "Working";
    case AgentStatus::Case::done:
        return "Done";
    case AgentStatus::Case::idle:
        break;
    }
    return "Idle";
}

/// The name of a program that the person watches, without a folder and on one line.
std::string shownName(std::string_view watched) {
    std::string name = Text::shortened(Text::lastPathComponent(watched), longestName, longestName - 1);
    std::ranges::replace_if(name, [](char character) { return static_cast<unsigned char>(character) < ' '; }, ' ');
    return name;
}

template <typename Selects> std::string sessionWords(const AgentStore& agents, Selects selects) {
    std::string words;
    for (const AgentSession& session : agents.sessions()) {
        if (selects(session)) {
            words += fmt::format("{}{}", words.empty() ? "" : ", ", word(session.status.value));
        }
    }
    return words.empty() ? "no sessions" : "sessions: " + words;
}

std::string lastEvent(std::optional<Date> heard, Date now) {
    return heard ? fmt::format("last event {} ago", Formatters::friendlyDuration((now - *heard).count())) : "no event";
}

std::string kindLine(const AgentStore& agents, AgentKind kind, Date now) {
    bool isConnected = false;
    std::optional<Date> heard;
    for (const HookAgent agent : allHookAgents) {
        if (agentKind(agent) == kind) {
            isConnected = agents.connected().contains(agent);
            const auto found = agents.lastEventByAgent().find(agent);
            heard = found == agents.lastEventByAgent().end() ? std::nullopt : std::optional{found->second};
        }
    }
    return fmt::format("{}: {}{}, {}, {}\n", displayTitle(kind), isConnected ? "connected" : "not connected",
                       agents.isHidden(kind) ? ", hidden" : "", lastEvent(heard, now),
                       sessionWords(agents, [kind](const AgentSession& session) { return session.kind == kind; }));
}

std::string watchedLine(const AgentStore& agents, const std::string& name) {
    return fmt::format("{}: not connected{}, no event, {}\n", shownName(name),
                       agents.isHidden(AgentKind::custom) ? ", hidden" : "",
                       sessionWords(agents, [&name](const AgentSession& session) {
                           return session.kind == AgentKind::custom && session.customName == name;
                       }));
}

std::string percentEncoded(std::string_view text) {
    constexpr std::string_view kept = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    std::string encoded;
    for (const char character : text) {
        if (character == '\n') {
            encoded += "%0D%0A";
        } else if (kept.contains(character)) {
            encoded += character;
        } else {
            encoded += fmt::format("%{:02X}", static_cast<unsigned char>(character));
        }
    }
    return encoded;
}

} // namespace

std::string text(const About& about, const AgentStore* agents, Date now) {
    std::string text = fmt::format("Kippo {}\n", about.version);
    if (!about.system.empty()) {
        text += about.system + "\n";
    }
    if (!agents) {
        return text;
    }
    text += "\n";
    for (const AgentKind kind : allAgentKinds) {
        if (kind != AgentKind::custom) {
            text += kindLine(*agents, kind, now);
        }
    }
    for (const std::string& name : agents->watchedNames()) {
        text += watchedLine(*agents, name);
    }
    return text;
}

std::string letter(const std::string& address, const std::string& text) {
    // Room above for what the person has to say.
    return fmt::format("mailto:{}?subject={}&body={}", address, percentEncoded(subject), percentEncoded("\n\n" + text));
}

} // namespace kippo::ProblemReport
