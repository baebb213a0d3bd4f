// Codex's session files: one event a line. Two generations are read alike: the older wrote an event for each step
// (user_message, exec_command_begin …), today's writes item_completed.

#include "Agents/ApiError.h"
#include "Agents/CodexDetail.h"
#include "Agents/StatusNormalizer.h"
#include "Agents/ToolCalls.h"
#include "Agents/TranscriptWatcher.h"
#include "Support/JsonSkim.h"
#include "Support/Text.h"

#include <algorithm>
#include <array>

namespace kippo {

namespace {

using State = TranscriptWatcher::State;
using Phase = State::Phase;

/// A completed item of a turn.
struct Item {
    JsonText type;
    JsonText id;
    std::vector<JsonText> texts;
};

/// The members of one line that matter here; texts stay in the line. Which of them are there depends on the types.
struct Line {
    JsonText timestamp, kind;
    JsonText type, id, cwd, message, lastAgentMessage, name, arguments, input, callID, role, status, originator,
        threadSource, approvalPolicy, reviewer;
    /// Members of several shapes, as they stand in the line.
    JsonText error, source, action, command, changes;
    std::vector<JsonText> texts; ///< of "content"
    std::optional<std::int64_t> tokens;
    Item item;
};

std::vector<JsonText> readTexts(JsonSkim& json) {
    std::vector<JsonText> texts;
    json.array([&] {
        json.object([&](const JsonText& key) {
            if (key == "text") {
                texts.push_back(json.text().value_or(JsonText{}));
            }
        });
    });
    return texts;
}

void readItem(JsonSkim& json, Item& item) {
    json.object([&](const JsonText& key) {
        if (key == "type") {
            item.type = json.text().value_or(JsonText{});
        } else if (key == "id") {
            item.id = json.text().value_or(JsonText{});
        } else if (key == "content") {
            item.texts = readTexts(json);
        }
    });
}

/// "info"."total_token_usage"."total_tokens"
std::optional<std::int64_t> readTokens(JsonSkim& json) {
    std::optional<std::int64_t> tokens;
    json.object([&](const JsonText& key) {
        if (key == "total_token_usage") {
            json.object([&](const JsonText& inner) {
                if (inner == "total_tokens") {
                    tokens = json.integer();
                }
            });
        }
    });
    return tokens;
}

void readPayload(JsonSkim& json, Line& line) {
    struct Member {
        std::string_view key;
        JsonText Line::* text;
    };
    constexpr std::array<Member, 15> texts{{{"type", &Line::type},
                                            {"id", &Line::id},
                                            {"cwd", &Line::cwd},
                                            {"message", &Line::message},
                                            {"last_agent_message", &Line::lastAgentMessage},
                                            {"name", &Line::name},
                                            {"arguments", &Line::arguments},
                                            {"input", &Line::input},
                                            {"call_id", &Line::callID},
                                            {"role", &Line::role},
                                            {"status", &Line::status},
                                            {"originator", &Line::originator},
                                            {"thread_source", &Line::threadSource},
                                            {"approval_policy", &Line::approvalPolicy},
                                            {"approvals_reviewer", &Line::reviewer}}};
    constexpr std::array<Member, 5> values{{{"error", &Line::error},
                                            {"source", &Line::source},
                                            {"action", &Line::action},
                                            {"command", &Line::command},
                                            {"changes", &Line::changes}}};
    json.object([&](const JsonText& key) {
        const auto named = [&key](const Member& member) { return key == member.key; };
        if (const auto* text = std::ranges::find_if(texts, named); text != texts.end()) {
            line.*text->text = json.text().value_or(JsonText{});
        } else if (const auto* value = std::ranges::find_if(values, named); value != values.end()) {
            (line.*value->text).raw = json.value();
        } else if (key == "content") {
            line.texts = readTexts(json);
        } else if (key == "item") {
            readItem(json, line.item);
        } else if (key == "info") {
            line.tokens = readTokens(json);
        }
    });
}

/// False for a line that is not one whole JSON object.
bool readLine(std::string_view text, Line& line) {
    line = Line{};
    JsonSkim json{text};
    const bool isObject = json.object([&](const JsonText& key) {
        if (key == "timestamp") {
            line.timestamp = json.text().value_or(JsonText{});
        } else if (key == "type") {
            line.kind = json.text().value_or(JsonText{});
        } else if (key == "payload") {
            readPayload(json, line);
        }
    });
    return isObject && json.finished();
}

/// The sentence of an error, which is a string or an object with a "message".
std::optional<std::string> errorText(const JsonText& error) {
    JsonSkim json{error.raw};
    std::optional<JsonText> text;
    if (json.peek() == JsonSkim::Kind::string) {
        text = json.text();
    } else {
        json.object([&](const JsonText& key) {
            if (key == "message") {
                text = json.text();
            }
        });
    }
    return apiErrorLine(text ? text->decoded() : std::string{error.raw});
}

/// The user's own words in a user message; nothing when Codex put it there itself.
std::optional<std::string> request(std::string text) {
    for (const std::string_view injected :
         {"<environment_context>", "<user_instructions>", "# AGENTS.md instructions", "<INSTRUCTIONS>",
          "<permissions instructions>", "<skills_instructions>", "<turn_aborted>"}) {
        if (Text::trimmed(text).starts_with(injected)) {
            return std::nullopt;
        }
    }
    // An editor puts its open files in front.
    constexpr std::string_view editorMark = "## My request for Codex:";
    if (const auto at = text.find(editorMark); at != std::string::npos && text.starts_with("# Context from my IDE")) {
        text.erase(0, at + editorMark.size());
    }
    return CodexDetail::shown(text);
}

/// The state that the lines build up.
class Reader {
public:
    Reader(std::string_view fallbackID, Date modified) {
        state_.agent = AgentKind::codex;
        state_.session = fallbackID;
        state_.lastActivity = modified;
        state_.phaseSince = distantPast;
    }

    void read(const Line& line);
    std::optional<State> finish();

private:
    void meta(const Line& line);
    void event(const Line& line);
    bool turnEvent(const Line& line);
    void stepBegan(const Line& line);
    void itemCompleted(const Item& item);
    void response(const Line& line);
    void functionCall(const Line& line);
    void customCall(const Line& line);
    void prompt(const std::string& text);
    void reply(std::vector<JsonText> texts);
    void completed(const Line& line);
    void approval(std::string_view type);
    void finished(const JsonText& callID);
    void begin(ToolCalls::Call call);
    void leaveOpen(const Line& line);
    void think();
    void wentOn();
    void setPhase(Phase::Case phase, bool pendingDone, std::string sentence = {});

    State state_;
    bool hasMeta_ = false;
    JsonText cwd_;
    Date time_; ///< of the line being read
    std::vector<JsonText> reply_;
    ToolCalls calls_;
    JsonText openCallID_;
    bool userApproves_ = true; ///< and not a policy or a reviewing agent
    bool any_ = false;
};

void Reader::read(const Line& line) {
    any_ = true;
    const auto time = TranscriptWatcher::date(line.timestamp.raw);
    time_ = time.value_or(state_.lastActivity);
    state_.lastActivity = std::max(state_.lastActivity, time_);
    if (line.kind == "session_meta") {
        meta(line);
    } else if (line.kind == "turn_context") {
        cwd_ = line.cwd.empty() ? cwd_ : line.cwd;
        userApproves_ = line.approvalPolicy != "never" && (line.reviewer.empty() || line.reviewer == "user");
    } else if (line.kind == "event_msg") {
        event(line);
    } else if (line.kind == "response_item") {
        response(line);
    }
}

void Reader::meta(const Line& line) {
    // A fork repeats the records of the session it came from; the first is the file's own.
    if (hasMeta_) {
        return;
    }
    hasMeta_ = true;
    if (!line.id.empty()) {
        state_.session = Text::validUtf8(line.id.decoded());
    }
    cwd_ = line.cwd.empty() ? cwd_ : line.cwd;
    state_.startedAt = TranscriptWatcher::date(line.timestamp.raw);
    state_.isSubagent = line.threadSource == "subagent" || line.source.raw.contains("\"subagent\"");
    const auto& originator = line.originator.raw;
    if (line.source.raw == "\"exec\"" || originator == "codex_exec") {
        state_.interactive = false;
    } else if (line.source.raw == "\"cli\"" || originator == "codex-tui" || originator == "codex_cli_rs") {
        state_.interactive = true;
    }
}

void Reader::setPhase(Phase::Case phase, bool pendingDone, std::string sentence) {
    state_.phase = {phase, std::move(sentence)};
    state_.phaseSince = time_;
    state_.pendingDone = pendingDone;
    state_.openCall.reset();
}

/// Something shows that the turn goes on: a request for approval was answered.
void Reader::wentOn() {
    const bool waits = state_.phase.value == Phase::Case::needsYou;
    if (waits || (state_.phase.value == Phase::Case::working && !state_.pendingDone)) {
        setPhase(Phase::Case::working, false);
    }
}

void Reader::prompt(const std::string& text) {
    if (auto words = request(text)) {
        state_.prompt = std::move(words);
    }
    state_.failure.reset();
    setPhase(Phase::Case::working, false);
}

void Reader::reply(std::vector<JsonText> texts) {
    if (std::ranges::all_of(texts, &JsonText::empty)) {
        return;
    }
    reply_ = std::move(texts);
    if (state_.phase.value == Phase::Case::working) {
        wentOn();
    }
}

void Reader::completed(const Line& line) {
    if (!line.lastAgentMessage.empty()) {
        reply_ = {line.lastAgentMessage};
    }
    if (!line.error.empty() && line.error.raw != "null") {
        state_.failure = errorText(line.error);
    }
    calls_.finishAll();
    setPhase(Phase::Case::working, true);
}

void Reader::approval(std::string_view type) {
    setPhase(Phase::Case::needsYou, false,
             type.starts_with("exec") ? "Waiting for you to approve a command"
             : type.contains("patch") ? "Waiting for you to approve a file change"
                                      : "Waiting for your approval");
}

void Reader::finished(const JsonText& callID) {
    calls_.finish(callID);
    const auto open = callID.empty() || callID.raw == openCallID_.raw ? std::nullopt : state_.openCall;
    wentOn();
    state_.openCall = open;
}

void Reader::begin(ToolCalls::Call call) {
    call.time = time_;
    calls_.begin(call);
}

void Reader::think() { begin({.name = {.raw = "reasoning"}, .thinking = true}); }

/// The beginnings and ends of turns; false for any other event.
bool Reader::turnEvent(const Line& line) {
    if (line.type == "task_started") {
        calls_.finishAll();
        state_.failure.reset();
        setPhase(Phase::Case::working, false);
    } else if (line.type == "task_complete") {
        completed(line);
    } else if (line.type == "turn_aborted") {
        calls_.finishAll();
        setPhase(Phase::Case::interrupted, false);
    } else if (line.type == "error") {
        state_.failure = apiErrorLine(line.message.decoded());
        setPhase(Phase::Case::working, true);
    } else {
        return false;
    }
    return true;
}

void Reader::event(const Line& line) {
    const auto type = line.type.raw;
    if (turnEvent(line)) {
        return;
    }
    if (type == "user_message") {
        prompt(line.message.decoded());
    } else if (type == "agent_message") {
        reply({line.message});
    } else if (type == "item_completed") {
        itemCompleted(line.item);
    } else if (type == "agent_reasoning") {
        think();
    } else if (type == "token_count") {
        state_.tokens = line.tokens ? line.tokens : state_.tokens;
    } else if (type.ends_with("approval_request")) {
        approval(type);
    } else if (type.ends_with("_begin")) {
        stepBegan(line);
    } else if (type.ends_with("_end")) {
        finished(line.callID);
    }
}

/// The older generation's beginnings. Where a call told of the step before, its own words are the better ones.
void Reader::stepBegan(const Line& line) {
    wentOn();
    const auto* last = calls_.last();
    const bool told = calls_.knows(line.callID) || (line.callID.empty() && last && !last->finished && !last->thinking);
    if (told) {
        return;
    }
    ToolCalls::Call call;
    call.id = line.callID;
    if (line.type == "exec_command_begin") {
        call.name.raw = "exec_command";
        call.input = line.command;
        call.detail = CodexDetail::ofCommand;
    } else if (line.type == "patch_apply_begin") {
        call.name.raw = "apply_patch";
        call.input = line.changes;
        call.detail = CodexDetail::ofChanges;
    } else if (line.type == "web_search_begin") {
        call.name.raw = "web_search";
    } else {
        return;
    }
    begin(call);
}

void Reader::itemCompleted(const Item& item) {
    if (item.type == "UserMessage") {
        prompt(joinedLines(item.texts));
    } else if (item.type == "AgentMessage") {
        reply(item.texts);
    } else if (item.type == "Reasoning") {
        think();
    } else if (item.type == "CommandExecution" || item.type == "FileChange" || item.type == "McpToolCall" ||
               calls_.knows(item.id)) {
        finished(item.id);
    }
}

void Reader::response(const Line& line) {
    const auto type = line.type.raw;
    if (type == "message") {
        if (line.role == "assistant") {
            reply(line.texts);
        }
    } else if (type == "function_call") {
        functionCall(line);
    } else if (type == "custom_tool_call") {
        customCall(line);
    } else if (type == "local_shell_call") {
        begin({.id = line.callID,
               .name = {.raw = "local_shell"},
               .input = line.action,
               .detail = CodexDetail::ofAction,
               .kind = AgentActivity::Kind::shell});
    } else if (type == "web_search_call") {
        // Written when the search is over; no output follows.
        begin({.id = line.id,
               .name = {.raw = "web_search"},
               .input = line.action,
               .detail = CodexDetail::ofQuery,
               .finished = line.status == "completed"});
    } else if (type == "reasoning") {
        think();
    } else if (type == "function_call_output" || type == "custom_tool_call_output" ||
               type == "local_shell_call_output") {
        finished(line.callID);
    }
}

void Reader::functionCall(const Line& line) {
    ToolCalls::Call call{
        .id = line.callID, .name = line.name, .input = line.arguments, .detail = CodexDetail::ofArguments};
    // Waiting for, or typing into, a command that runs already: the command is what people know.
    if (const auto* last = calls_.last(); line.name == "write_stdin") {
        call.kind = AgentActivity::Kind::shell;
        const bool same = last && (last->name == "exec_command" || last->name == "write_stdin");
        call.input = same ? last->input : JsonText{};
    }
    begin(call);
    if (line.name == "request_user_input") {
        setPhase(Phase::Case::needsYou, false, "Has a question for you");
    }
    leaveOpen(line);
}

/// The request for approval itself is not written down, only the call that makes it necessary.
void Reader::leaveOpen(const Line& line) {
    const std::string_view arguments = line.arguments.raw;
    const bool escalates = arguments.contains("require_escalated") || arguments.contains("with_escalated_permissions");
    if (userApproves_ && (escalates || line.name == "apply_patch")) {
        state_.openCall = {.since = time_,
                           .sentence = StatusNormalizer::approval(escalates ? "shell" : line.name.decoded())};
        openCallID_ = line.callID;
    }
}

void Reader::customCall(const Line& line) {
    begin({.id = line.callID,
           .name = line.name,
           .input = line.input,
           .detail = line.name == "apply_patch" ? CodexDetail::ofPatch : CodexDetail::ofText});
    leaveOpen(line);
}

std::optional<State> Reader::finish() {
    if (!any_) {
        return std::nullopt;
    }
    if (!cwd_.empty()) {
        state_.cwd = Text::validUtf8(cwd_.decoded());
    }
    const std::string reply = Text::validUtf8(Text::trimmed(joinedLines(reply_)));
    state_.summary = TranscriptWatcher::summary(reply);
    state_.markerNeedsYou = TranscriptWatcher::needsYouMarker(reply);
    state_.activity = calls_.activity();
    return std::move(state_);
}

} // namespace

std::optional<TranscriptWatcher::State> TranscriptWatcher::parseCodex(std::span<const std::string_view> lines,
                                                                      std::string_view fallbackID, Date modified) {
    Reader reader{fallbackID, modified};
    Line line;
    for (const auto text : lines) {
        if (readLine(text, line)) {
            reader.read(line);
        }
    }
    return reader.finish();
}

} // namespace kippo
