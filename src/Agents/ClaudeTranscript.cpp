// Claude Code's transcripts: one JSON object a line, of which only the user's and the assistant's move the session.

#include "Agents/ToolCalls.h"
#include "Agents/TranscriptWatcher.h"
#include "Support/JsonSkim.h"
#include "Support/Text.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace kippo {

namespace {

using State = TranscriptWatcher::State;
using Phase = State::Phase;

/// One item of a message's content.
struct Item {
    JsonText type{};
    JsonText text{};
    JsonText name{};
    JsonText id{};
    JsonText toolUseID{};
    JsonText input{}; ///< an object, as it stands in the line
};

/// The members of one line that matter here; texts stay in the line.
struct Line {
    JsonText type, session, cwd, entrypoint, timestamp, lastPrompt;
    JsonText origin; ///< who made a user line, "human" or a machine's word
    bool meta = false;
    bool sidechain = false;
    bool compactSummary = false;
    bool apiError = false;
    bool hasMessage = false;
    JsonText messageID, model, stopReason;
    std::vector<Item> items; ///< plain string content is one text item

    void clear() {
        auto kept = std::move(items);
        kept.clear();
        *this = Line{};
        items = std::move(kept);
    }
    bool has(std::string_view itemType) const {
        return std::ranges::any_of(items, [itemType](const Item& item) { return item.type == itemType; });
    }
};

void readItem(JsonSkim& json, Item& item) {
    json.object([&](const JsonText& key) {
        if (key == "type") {
            item.type = json.text().value_or(JsonText{});
        } else if (key == "text") {
            item.text = json.text().value_or(JsonText{});
        } else if (key == "name") {
            item.name = json.text().value_or(JsonText{});
        } else if (key == "id") {
            item.id = json.text().value_or(JsonText{});
        } else if (key == "tool_use_id") {
            item.toolUseID = json.text().value_or(JsonText{});
        } else if (key == "input") {
            item.input.raw = json.value();
        }
    });
}

void readContent(JsonSkim& json, std::vector<Item>& items) {
    items.clear();
    if (json.peek() == JsonSkim::Kind::string) {
        items.push_back({.type = {.raw = "text"}, .text = json.text().value_or(JsonText{})});
        return;
    }
    json.array([&] { readItem(json, items.emplace_back()); });
}

void readMessage(JsonSkim& json, Line& line) {
    line.hasMessage = json.object([&](const JsonText& key) {
        if (key == "content") {
            readContent(json, line.items);
        } else if (key == "id") {
            line.messageID = json.text().value_or(JsonText{});
        } else if (key == "model") {
            line.model = json.text().value_or(JsonText{});
        } else if (key == "stop_reason") {
            line.stopReason = json.text().value_or(JsonText{});
        }
    });
}

void readOrigin(JsonSkim& json, Line& line) {
    json.object([&](const JsonText& key) {
        if (key == "kind") {
            line.origin = json.text().value_or(JsonText{});
        }
    });
}

/// False for a line that is not one whole JSON object.
bool readLine(std::string_view text, Line& line) {
    struct Member {
        std::string_view key;
        JsonText Line::* text;
    };
    constexpr std::array<Member, 6> texts{{{"type", &Line::type},
                                           {"sessionId", &Line::session},
                                           {"cwd", &Line::cwd},
                                           {"timestamp", &Line::timestamp},
                                           {"entrypoint", &Line::entrypoint},
                                           {"lastPrompt", &Line::lastPrompt}}};
    line.clear();
    JsonSkim json{text};
    const bool isObject = json.object([&](const JsonText& key) {
        for (const auto& member : texts) {
            if (key == member.key) {
                line.*member.text = json.text().value_or(JsonText{});
                return;
            }
        }
        if (key == "message") {
            readMessage(json, line);
        } else if (key == "isSidechain") {
            line.sidechain = json.flag();
        } else if (key == "isMeta") {
            line.meta = json.flag();
        } else if (key == "isCompactSummary") {
            line.compactSummary = json.flag();
        } else if (key == "isApiErrorMessage") {
            line.apiError = json.flag();
        } else if (key == "origin") {
            readOrigin(json, line);
        }
    });
    return isObject && json.finished();
}

std::vector<JsonText> textsOf(const std::vector<Item>& items) {
    std::vector<JsonText> texts;
    for (const auto& item : items) {
        if (item.type == "text") {
            texts.push_back(item.text);
        }
    }
    return texts;
}

/// Whether nothing but white space is in `text`, also as escapes.
bool isBlank(const JsonText& text) {
    if (!text.escaped) {
        return Text::trimmed(text.raw).empty();
    }
    return Text::trimmed(text.raw.substr(0, text.raw.find('\\'))).empty() && Text::trimmed(text.decoded()).empty();
}

bool startsWithAny(std::string_view text, std::initializer_list<std::string_view> beginnings) {
    return std::ranges::any_of(beginnings, [text](std::string_view start) { return text.starts_with(start); });
}

/// Without the blocks that the client, an editor or a hook put before or after the user's own words.
std::string withoutInjected(std::string text) {
    for (const std::string_view tag : {"system-reminder", "ide_opened_file", "ide_selection", "ide_diagnostics"}) {
        const std::string open = "<" + std::string{tag} + ">";
        const std::string close = "</" + std::string{tag} + ">";
        for (auto from = text.find(open); from != std::string::npos; from = text.find(open, from)) {
            const auto to = text.find(close, from);
            text.erase(from, to == std::string::npos ? to : to + close.size() - from);
        }
    }
    return text;
}

/// The state that the lines build up.
class Reader {
public:
    Reader(std::string_view fallbackID, Date modified) : fallbackID_(fallbackID) {
        state_.lastActivity = modified;
        state_.phaseSince = distantPast;
    }

    void read(const Line& line);
    std::optional<State> finish();

private:
    void user(const Line& line);
    void userText(const Line& line, const std::string& text);
    void assistant(const Line& line);
    void assistantText(const Line& line);
    void beginTools(const Line& line);
    void setPhase(Phase::Case phase, bool pendingDone);

    State state_;
    std::string_view fallbackID_;
    JsonText session_, cwd_, entrypoint_, lastPrompt_;
    Date time_; ///< of the line being read
    std::vector<JsonText> reply_;
    bool failed_ = false;
    ToolCalls calls_;
    bool any_ = false;
    bool onlySidechain_ = true;
};

void Reader::read(const Line& line) {
    any_ = true;
    session_ = line.session.empty() ? session_ : line.session;
    cwd_ = line.cwd.empty() ? cwd_ : line.cwd;
    entrypoint_ = line.entrypoint.empty() ? entrypoint_ : line.entrypoint;
    onlySidechain_ = onlySidechain_ && line.sidechain;
    if (line.meta || line.sidechain) {
        return;
    }
    const auto time = line.timestamp.escaped ? std::nullopt : TranscriptWatcher::date(line.timestamp.raw);
    time_ = time.value_or(state_.lastActivity);
    state_.lastActivity = std::max(state_.lastActivity, time_);
    if (line.type == "last-prompt") {
        lastPrompt_ = line.lastPrompt;
    } else if (line.hasMessage && line.type == "user") {
        user(line);
    } else if (line.hasMessage && line.type == "assistant") {
        assistant(line);
    }
}

void Reader::setPhase(Phase::Case phase, bool pendingDone) {
    state_.phase = {phase, {}};
    state_.phaseSince = time_;
    state_.pendingDone = pendingDone;
}

void Reader::user(const Line& line) {
    // The summary that a compaction puts in place of the conversation is no request, and may quote anything.
    if (line.compactSummary) {
        return;
    }
    const std::string text = joinedLines(textsOf(line.items));
    if (text.contains("[Request interrupted by user")) {
        calls_.finishAll();
        setPhase(Phase::Case::interrupted, false);
    } else if (line.has("tool_result")) {
        for (const auto& item : line.items) {
            if (item.type == "tool_result") {
                calls_.finish(item.toolUseID);
            }
        }
        setPhase(Phase::Case::working, false);
    } else {
        userText(line, text);
    }
}

void Reader::userText(const Line& line, const std::string& text) {
    // What a slash command or a "!" command did is not a request to the agent.
    if (startsWithAny(text, {"<local-command", "<command-", "<bash-input", "<bash-stdout", "<bash-stderr",
                             "<user-prompt-submit-hook"})) {
        return;
    }
    const std::string own = withoutInjected(text);
    if (Text::trimmed(own).empty()) {
        return;
    }
    // A background task that reports back sets the agent to work, but nobody asked for anything.
    const bool human = line.origin.empty() || line.origin == "human";
    if (human && !own.starts_with("<task-notification")) {
        state_.prompt = TranscriptWatcher::oneLine(Text::validUtf8(own));
    }
    calls_.finishAll();
    failed_ = false;
    setPhase(Phase::Case::working, false);
}

void Reader::assistantText(const Line& line) {
    const auto texts = textsOf(line.items);
    const bool synthetic = line.apiError || line.model == "<synthetic>";
    if (std::ranges::all_of(texts, isBlank)) {
        failed_ = failed_ && synthetic;
        return;
    }
    // The client's own filler after an interruption is neither a reply nor a failure.
    if (synthetic && !line.apiError && texts.front() == "No response requested.") {
        return;
    }
    reply_ = texts;
    failed_ = synthetic;
}

void Reader::beginTools(const Line& line) {
    const bool usesTools = line.has("tool_use");
    for (const auto& item : line.items) {
        if (item.type == "tool_use") {
            calls_.begin({.id = item.id,
                          .group = line.messageID,
                          .name = item.name,
                          .input = item.input,
                          .detail = ToolCalls::detailOfObject,
                          .time = time_});
        } else if (item.type == "thinking" && !usesTools) {
            calls_.begin({.name = {.raw = "Thinking"}, .time = time_, .thinking = true});
        }
    }
}

void Reader::assistant(const Line& line) {
    beginTools(line);
    assistantText(line);
    // While a reply is being written its lines may still lack the reason; one that calls a tool has not ended the turn.
    const bool goesOn = line.stopReason == "tool_use" || (line.stopReason.empty() && line.has("tool_use"));
    setPhase(Phase::Case::working, !goesOn);
}

std::optional<State> Reader::finish() {
    if (!any_) {
        return std::nullopt;
    }
    const auto given = [](const JsonText& text) {
        return text.empty() ? std::nullopt : std::optional{Text::validUtf8(text.decoded())};
    };
    state_.agent = AgentKind::claude;
    state_.session = given(session_).value_or(std::string{fallbackID_});
    state_.cwd = given(cwd_);
    state_.entrypoint = given(entrypoint_);
    if (state_.entrypoint == "cli") {
        state_.interactive = true;
    } else if (state_.entrypoint && state_.entrypoint->starts_with("sdk-")) {
        state_.interactive = false;
    }
    // A sub-agent's own file bears its parent's session; the main one may show nothing but a sub-agent's lines for a
    // while.
    if (onlySidechain_ && state_.session != fallbackID_) {
        state_.isSubagent = true;
        state_.session = fallbackID_;
    }

    const std::string reply = Text::validUtf8(Text::trimmed(joinedLines(reply_)));
    state_.summary = TranscriptWatcher::summary(reply);
    state_.markerNeedsYou = TranscriptWatcher::needsYouMarker(reply);
    if (failed_) {
        state_.failure = TranscriptWatcher::oneLine(reply);
    }
    if (!state_.prompt) {
        state_.prompt = TranscriptWatcher::oneLine(Text::validUtf8(lastPrompt_.decoded()));
    }
    state_.activity = calls_.activity();
    if (const auto question = calls_.pendingQuestion(); !question.empty()) {
        state_.phase = {Phase::Case::needsYou, question == "askuserquestion" ? "Has a question for you"
                                                                             : "Waiting for you to review its plan"};
    }
    return std::move(state_);
}

} // namespace

std::optional<TranscriptWatcher::State> TranscriptWatcher::parseClaude(std::span<const std::string_view> lines,
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
