#include "Agents/HookBridge.h"

#include "Agents/ToolInput.h"
#include "Support/Text.h"

#include <algorithm>

namespace kippo::HookBridge {

namespace {

constexpr std::size_t promptLimit = 300;
constexpr std::size_t messageLimit = 240;

/// How `record` begins every line.
constexpr std::string_view lineStart = "{\"t\":";

/// The members of a hook's input that make its log line. Keeps views of the text that is read.
class Input final : public Json::Visitor {
public:
    std::optional<std::string_view> operator[](std::string_view name) const { return members_[name]; }
    std::optional<std::string_view> firstWorkspaceRoot() const { return workspaceRoot_; }
    std::optional<std::string> detail() const {
        return hasToolInput_ ? AgentActivity::detailFrom(toolInput_) : std::nullopt;
    }

    bool value(Json::Path path, Json::Kind kind, std::string_view text) override {
        if (path.empty()) {
            return false;
        }
        if (path.size() == 1) {
            setMember(path[0].key, kind, text);
        } else if (path[0].key == toolInputName) {
            toolInput_.value(path.subspan(1), kind, text);
        } else if (path.size() == 2 && path[0].key == rootsName && path[1].index == 0 && kind == Json::Kind::string) {
            workspaceRoot_ = text;
        }
        return true;
    }

    bool begin(Json::Path path, Json::Kind kind) override {
        if (path.empty()) {
            return kind == Json::Kind::object;
        }
        if (path.size() == 1) {
            setMember(path[0].key, kind, {});
        }
        if (path[0].key == toolInputName) {
            toolInput_.begin(path.subspan(1));
        }
        return true;
    }

private:
    static constexpr std::string_view toolInputName = "tool_input";
    static constexpr std::string_view rootsName = "workspace_roots";

    /// Of equal names the last counts, whatever its type.
    void setMember(std::string_view name, Json::Kind kind, std::string_view text) {
        if (name == toolInputName) {
            hasToolInput_ = kind == Json::Kind::object;
        } else if (name == rootsName) {
            workspaceRoot_.reset();
        } else {
            members_.set(name, kind, text);
        }
    }

    Json::StringMembers members_{"hook_event_name",
                                 "session_id",
                                 "cwd",
                                 "tool_name",
                                 "message",
                                 "notification_type",
                                 "prompt",
                                 "last_assistant_message",
                                 "agent_id",
                                 "conversation_id",
                                 "command",
                                 "file_path",
                                 "text",
                                 "prompt_response"};
    std::optional<std::string_view> workspaceRoot_;
    ToolInput toolInput_;
    bool hasToolInput_ = false;
};

/// The fields of a log line, found by Claude Code's names for them and, where those are missing, by the names of the
/// agent that the command line told.
struct Fields {
    std::optional<std::string_view> session;
    std::optional<std::string_view> cwd;
    std::optional<std::string_view> reply;
    std::optional<std::string> detail;
};

std::optional<std::string> topLevelDetail(const Input& input) {
    ToolInput subject;
    for (const std::string_view name : {"command", "file_path"}) {
        if (const auto text = input[name]) {
            const Json::Step step{name};
            subject.value({&step, 1}, Json::Kind::string, *text);
        }
    }
    return AgentActivity::detailFrom(subject);
}

Fields fields(const Input& input, std::string_view agentName) {
    Fields found{input["session_id"], input["cwd"], input["last_assistant_message"], input.detail()};
    if (agentName == rawValue(HookAgent::cursor)) {
        found.session = found.session ? found.session : input["conversation_id"];
        found.cwd = found.cwd ? found.cwd : input.firstWorkspaceRoot();
        found.reply = found.reply ? found.reply : input["text"];
        found.detail = found.detail ? found.detail : topLevelDetail(input);
    } else if (agentName == rawValue(HookAgent::gemini)) {
        found.reply = found.reply ? found.reply : input["prompt_response"];
    }
    return found;
}

void write(Json::Writer& line, std::string_view key, std::optional<std::string_view> text,
           std::size_t limit = std::string_view::npos) {
    if (text) {
        line.key(key).string(limit == std::string_view::npos ? *text : Text::prefix(*text, limit));
    }
}

/// The members of a log line.
class Line final : public Json::Visitor {
public:
    std::optional<double> time;
    Json::StringMembers members{"e", "s", "a", "c", "tool", "m", "n", "st", "p", "d", "r", "g"};

    std::optional<std::string> operator[](std::string_view name) const {
        const auto text = members[name];
        return text ? std::optional{Text::validUtf8(*text)} : std::nullopt;
    }

    bool value(Json::Path path, Json::Kind kind, std::string_view text) override {
        if (path.size() == 1) {
            set(path[0].key, kind, text);
        }
        return !path.empty();
    }

    bool begin(Json::Path path, Json::Kind kind) override {
        if (path.size() == 1) {
            set(path[0].key, kind, {});
        }
        return !path.empty() || kind == Json::Kind::object;
    }

private:
    void set(std::string_view name, Json::Kind kind, std::string_view text) {
        if (name == "t") {
            time = kind == Json::Kind::number ? Json::toDouble(text) : std::nullopt;
        } else {
            members.set(name, kind, text);
        }
    }
};

std::optional<Event> parseWhole(std::string_view text) {
    std::string buffer{text};
    Line line;
    if (Json::read(buffer, line) != Json::Outcome::complete || !line.time || !line["e"]) {
        return std::nullopt;
    }
    return Event{.time = dateFromUnix(*line.time),
                 .name = *line["e"],
                 .session = line["s"].value_or(""),
                 .agent = hookAgentFromRaw(line["a"].value_or("")).value_or(HookAgent::claude),
                 .cwd = line["c"],
                 .message = line["m"],
                 .tool = line["tool"],
                 .kind = line["n"],
                 .status = line["st"],
                 .prompt = line["p"],
                 .detail = line["d"],
                 .reply = line["r"],
                 .source = line["g"]};
}

} // namespace

HookAgent Event::judgedBy() const { return source ? hookAgentFromRaw(*source).value_or(agent) : agent; }

bool isHookInvocation(std::span<char* const> arguments) {
    return std::ranges::any_of(arguments,
                               [](std::string_view word) { return word == hookFlag || word == legacyHookFlag; });
}

std::string_view agentName(std::span<char* const> arguments) {
    const auto flag = std::ranges::find(arguments, std::string_view{"--agent"},
                                        [](const char* word) { return std::string_view{word}; });
    return flag == arguments.end() || flag + 1 == arguments.end() ? std::string_view{} : *(flag + 1);
}

std::optional<std::string> recordInPlace(char* text, std::size_t size, std::string_view agentName, Date now) {
    Input input;
    if (Json::read(text, size, input) != Json::Outcome::complete) {
        return std::nullopt;
    }
    const auto name = input["hook_event_name"];
    const Fields found = fields(input, agentName);
    if (!name || !found.session) {
        return std::nullopt;
    }
    // A sub-agent speaks under its parent's session: what it was asked and answers is not what the user and the agent
    // said to each other.
    const bool isSubagent = input["agent_id"].has_value();
    const auto prompt = isSubagent || input["prompt"] == "" ? std::nullopt : input["prompt"];
    std::string result;
    Json::Writer line{result};
    line.beginObject().key("t").number(unixSeconds(now)).key("e").string(*name).key("s").string(*found.session);
    write(line, "a", rawValue(HookAgent::claude));
    write(line, "c", found.cwd);
    write(line, "tool", input["tool_name"]);
    write(line, "m", input["message"], messageLimit);
    write(line, "n", input["notification_type"]);
    write(line, "p", prompt, promptLimit);
    write(line, "d", found.detail);
    write(line, "r", isSubagent ? std::nullopt : found.reply, messageLimit);
    if (!agentName.empty() && agentName != rawValue(HookAgent::claude)) {
        write(line, "g", agentName);
    }
    line.endObject();
    result += '\n';
    return result;
}

std::optional<std::string> record(std::string_view input, std::string_view agentName, Date now) {
    std::string buffer{input};
    buffer.resize(input.size() + Json::padding);
    return recordInPlace(buffer.data(), input.size(), agentName, now);
}

std::optional<Event> parse(std::string_view line) {
    if (auto event = parseWhole(line)) {
        return event;
    }
    // A writer that found the disk full may have left half a line, to which the next one was then appended. No string
    // holds a bare quotation mark, so the start of a line cannot be mistaken.
    const auto start = line.rfind(lineStart);
    return start == 0 || start == std::string_view::npos || !line.starts_with('{') ? std::nullopt
                                                                                   : parseWhole(line.substr(start));
}

} // namespace kippo::HookBridge
