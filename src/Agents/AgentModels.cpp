#include "Agents/AgentModels.h"

#include "Support/Text.h"

#include <algorithm>
#include <initializer_list>

namespace kippo {

namespace {

bool containsAny(std::string_view text, std::initializer_list<std::string_view> words) {
    return std::ranges::any_of(words, [text](std::string_view word) { return text.contains(word); });
}

bool equalsAny(std::string_view text, std::initializer_list<std::string_view> words) {
    return std::ranges::find(words, text) != words.end();
}

/// The sentence for a verb and its subject: "Running ls", or "Running a command" without one.
std::string phrase(bool finished, std::string_view present, std::string_view past,
                   const std::optional<std::string>& subject, std::string_view without) {
    return std::string{finished ? past : present} + " " + (subject ? *subject : std::string{without});
}

} // namespace

std::string_view rawValue(AgentStatus::Case value) {
    switch (value) {
    case AgentStatus::Case::needsYou:
        return "needsYou";
    case AgentStatus::Case::working:
        return "working";
    case AgentStatus::Case::done:
        return "done";
    case AgentStatus::Case::idle:
        return "idle";
    }
    return {};
}

// The order of the tests is what makes "search_file" a code search and "TodoWrite" a plan.
AgentActivity::Kind AgentActivity::kindOf(std::string_view tool) {
    const std::string name = Text::lowered(tool);
    if (name.starts_with("mcp")) {
        return Kind::tool;
    }
    if (containsAny(name, {"todo", "plan"})) {
        return Kind::plan;
    }
    if (containsAny(name, {"think", "reason"})) {
        return Kind::thinking;
    }
    if (name == "bash" || containsAny(name, {"shell", "exec", "terminal"})) {
        return Kind::shell;
    }
    if (name == "replace" || containsAny(name, {"edit", "write", "patch", "notebook"})) {
        return Kind::edit;
    }
    if (name == "find" || containsAny(name, {"grep", "glob", "search_file", "codebase"})) {
        return Kind::search;
    }
    if (containsAny(name, {"web", "fetch", "search", "browser"})) {
        return Kind::web;
    }
    if (equalsAny(name, {"view", "ls"}) || containsAny(name, {"read", "list"})) {
        return Kind::read;
    }
    if (equalsAny(name, {"task", "agent"}) || name.contains("subagent")) {
        return Kind::delegate;
    }
    return Kind::tool;
}

std::string AgentActivity::toolName() const {
    constexpr std::string_view mcp = "mcp__";
    return tool.starts_with(mcp) ? "mcp:" + tool.substr(mcp.size()) : tool;
}

std::optional<std::string> AgentActivity::subject() const {
    if (!detail) {
        return std::nullopt;
    }
    const std::string_view line = Text::trimmed(std::string_view{*detail}.substr(0, detail->find('\n')));
    if (line.empty()) {
        return std::nullopt;
    }
    switch (kind) {
    case Kind::edit:
    case Kind::read:
        return Text::shortened(Text::lastPathComponent(line), 48, 47);
    case Kind::web: {
        // A page is known by its host; the path of a long address says little in a row.
        const auto scheme = line.find("://");
        const auto rest = scheme == std::string_view::npos ? line : line.substr(scheme + 3);
        return Text::shortened(scheme == std::string_view::npos ? rest : rest.substr(0, rest.find_first_of("/?#")), 48,
                               47);
    }
    default:
        return Text::shortened(line, 64, 63);
    }
}

std::string AgentActivity::text() const {
    const auto about = subject();
    switch (kind) {
    case Kind::shell:
        return phrase(finished, "Running", "Ran", about, "a command");
    case Kind::edit:
        return phrase(finished, "Editing", "Edited", about, "a file");
    case Kind::read:
        return phrase(finished, "Reading", "Read", about, "a file");
    case Kind::search:
        return about ? "Searching for “" + *about + "”" : "Searching the code";
    case Kind::web:
        return about ? phrase(finished, "Browsing", "Browsed", about, "") : "Searching the web";
    case Kind::delegate:
        return about ? "Sub-agent: " + *about : "Running a sub-agent";
    case Kind::plan:
        return "Updating its plan";
    case Kind::thinking:
        return "Thinking";
    case Kind::tool:
        return "Using " + toolName();
    }
    return {};
}

std::string AgentSession::title() const { return customName ? *customName : std::string{displayTitle(kind)}; }

std::string AgentSession::project() const {
    if (!cwd || cwd->empty()) {
        return title();
    }
    return std::string{Text::lastPathComponent(*cwd)};
}

std::string AgentSession::sentence(bool showingPrompt) const {
    const bool processOnly = id.starts_with("pid-");
    switch (status.value) {
    case AgentStatus::Case::needsYou:
        return status.sentence;
    case AgentStatus::Case::working:
        if (processOnly) {
            return "Busy";
        }
        if (activity && !activity->finished && activity->kind != AgentActivity::Kind::thinking) {
            return activity->text();
        }
        if (showingPrompt && prompt) {
            return "Working on: " + *prompt;
        }
        return activity ? activity->text() : "Working";
    case AgentStatus::Case::done:
        return summary ? *summary : "Finished";
    case AgentStatus::Case::idle:
        // Without its process there is nothing open: it ended before it had finished anything.
        return rootPID ? "Open, not busy" : "Ended";
    }
    return {};
}

std::string AgentSession::timeline(Date now) const {
    const double quiet = (now - lastEvent).count();
    switch (status.value) {
    case AgentStatus::Case::needsYou:
        return "Waiting " + Formatters::friendlyDuration(quiet);
    case AgentStatus::Case::working: {
        const double span = (now - workingSince.value_or(lastEvent)).count();
        return span < 60 ? "Just started" : "Active " + Formatters::friendlyDuration(span) + " so far";
    }
    case AgentStatus::Case::done:
        return quiet < 60 ? "Finished just now" : "Finished " + Formatters::friendlyDuration(quiet) + " ago";
    case AgentStatus::Case::idle:
        return quiet < 60 ? "Quiet just now" : "Quiet for " + Formatters::friendlyDuration(quiet);
    }
    return {};
}

} // namespace kippo
