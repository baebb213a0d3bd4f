// Gemini CLI's chat files. The first line names the session; then come messages, of which one is written again under
// its id when its tool calls have returned, and patches. A patch that holds "messages" is the history as it now
// stands: Gemini writes one when it starts, and when it takes an interrupted or failed turn back.

#include "Agents/ApiError.h"
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

/// Errors that follow a turn taken back by no more than this belong to it, and a history is written again in one go.
constexpr Seconds sameMoment{2.0};

struct Call {
    JsonText id, name, status, timestamp;
    JsonText arguments; ///< an object, as it stands in the line

    bool cancelled() const { return status == "cancelled"; }
    /// Files hold calls that have returned; other states are read should they come.
    bool returned() const { return status == "success" || status == "error" || cancelled(); }
};

/// The parts of a message: a string, or a list.
struct Content {
    std::vector<JsonText> texts;
    bool isList = false;
    bool answersCall = false;
};

/// The members of one line that matter here; texts stay in the line.
struct Line {
    JsonText id, type, timestamp, session, kind, start, rewind;
    Content content, shown; ///< what was sent, and what the user typed where that differs
    std::vector<Call> calls;
    std::optional<std::int64_t> tokens;
    bool history = false; ///< a patch that holds the messages
    JsonText updated;     ///< when a patch was made
    JsonText opening;     ///< the first text of a patch's messages

    /// The user stopped the turn, or took it back later.
    bool stopsTurn() const {
        const bool cancelled =
            type == "info" && !content.texts.empty() && content.texts.front() == "Request cancelled.";
        return cancelled || !rewind.empty();
    }
};

JsonText textOf(JsonSkim& json) { return json.text().value_or(JsonText{}); }

void readContent(JsonSkim& json, Content& content) {
    if (json.peek() == JsonSkim::Kind::string) {
        content.texts.push_back(textOf(json));
        return;
    }
    content.isList = true;
    json.array([&] {
        if (json.peek() == JsonSkim::Kind::string) {
            content.texts.push_back(textOf(json));
            return;
        }
        json.object([&](const JsonText& key) {
            if (key == "text") {
                content.texts.push_back(textOf(json));
            } else if (key == "functionResponse") {
                content.answersCall = true;
            }
        });
    });
}

void readCalls(JsonSkim& json, std::vector<Call>& calls) {
    json.array([&] {
        Call& call = calls.emplace_back();
        json.object([&](const JsonText& key) {
            if (key == "id") {
                call.id = textOf(json);
            } else if (key == "name") {
                call.name = textOf(json);
            } else if (key == "status") {
                call.status = textOf(json);
            } else if (key == "timestamp") {
                call.timestamp = textOf(json);
            } else if (key == "args") {
                call.arguments.raw = json.value();
            }
        });
    });
}

/// "tokens"."total"
std::optional<std::int64_t> readTokens(JsonSkim& json) {
    std::optional<std::int64_t> total;
    json.object([&](const JsonText& key) {
        if (key == "total") {
            total = json.integer();
        }
    });
    return total;
}

void readPatch(JsonSkim& json, Line& line) {
    json.object([&](const JsonText& key) {
        if (key == "lastUpdated") {
            line.updated = textOf(json);
        } else if (key == "messages") {
            line.history = true;
            bool first = true;
            json.array([&] {
                json.object([&](const JsonText& inner) {
                    if (first && inner == "content") {
                        Content content;
                        readContent(json, content);
                        line.opening = content.texts.empty() ? JsonText{} : content.texts.front();
                    }
                });
                first = false;
            });
        }
    });
}

/// False for a line that is not one whole JSON object.
bool readLine(std::string_view text, Line& line) {
    struct Member {
        std::string_view key;
        JsonText Line::* text;
    };
    constexpr std::array<Member, 7> texts{{{"id", &Line::id},
                                           {"type", &Line::type},
                                           {"timestamp", &Line::timestamp},
                                           {"sessionId", &Line::session},
                                           {"kind", &Line::kind},
                                           {"startTime", &Line::start},
                                           {"$rewindTo", &Line::rewind}}};
    line = Line{};
    JsonSkim json{text};
    const bool isObject = json.object([&](const JsonText& key) {
        const auto* const member = std::ranges::find_if(texts, [&](const Member& known) { return key == known.key; });
        if (member != texts.end()) {
            line.*member->text = textOf(json);
        } else if (key == "content") {
            readContent(json, line.content);
        } else if (key == "displayContent") {
            readContent(json, line.shown);
        } else if (key == "toolCalls") {
            readCalls(json, line.calls);
        } else if (key == "tokens") {
            line.tokens = readTokens(json);
        } else if (key == "$set") {
            readPatch(json, line);
        }
    });
    return isObject && json.finished();
}

bool isSessionContext(std::string_view text) { return Text::trimmed(text).starts_with("<session_context>"); }

/// Gemini tells the model first of all where it is: the first of the workspace's folders.
std::optional<std::string> workspaceFolder(std::string_view context) {
    constexpr std::string_view heading = "**Workspace Directories:**\n";
    const auto at = context.find(heading);
    if (!isSessionContext(context) || at == std::string_view::npos) {
        return std::nullopt;
    }
    context.remove_prefix(at + heading.size());
    const auto line = Text::trimmed(context.substr(0, context.find('\n')));
    return line.starts_with("- /") ? std::optional{Text::validUtf8(line.substr(2))} : std::nullopt;
}

/// The user's own words; empty when the client made the message up.
std::string request(const Content& content) {
    std::string words;
    for (const auto& part : content.texts) {
        const std::string text = part.decoded();
        const auto start = Text::trimmed(text);
        if (start.starts_with("--- Content from referenced files ---")) {
            break;
        }
        if (start.starts_with("<session_context>") || start.starts_with("<hook_context>") ||
            start.starts_with("Here is the user's editor context") ||
            start.starts_with("Here is a summary of changes in the user's editor context")) {
            continue;
        }
        words += (words.empty() ? "" : "\n") + text;
    }
    return words;
}

/// The state that the lines build up.
class Reader {
public:
    Reader(std::string_view fallbackID, Date modified) : modified_(modified) {
        state_.agent = AgentKind::gemini;
        state_.session = fallbackID;
        state_.lastActivity = distantPast;
        state_.phaseSince = distantPast;
    }

    void read(const Line& line);
    std::optional<State> finish();

private:
    void header(const Line& line);
    void history(const Line& line);
    void user(const Line& line);
    void gemini(const Line& line);
    void toolCalls(const Line& line);
    void error(const Line& line);
    void countTokens(const Line& line);
    bool isReplayed(const Line& line);
    bool turnIsOpen() const { return state_.phase.value == Phase::Case::working && !state_.pendingDone; }
    void setPhase(Phase::Case phase, bool pendingDone);

    State state_;
    Date modified_;
    bool hasHeader_ = false;
    Date time_; ///< of the line being read
    std::optional<JsonText> reply_;
    ToolCalls calls_;
    /// The history is being written again, since this moment; what is said in it is not new.
    std::optional<Date> replayedSince_;
    /// When a turn was taken back that had neither ended nor been cancelled.
    std::optional<Date> takenBack_;
    JsonText countedID_;
    std::int64_t counted_ = 0; ///< tokens of the message `countedID_`, which may be written again
    bool any_ = false;
};

void Reader::read(const Line& line) {
    any_ = true;
    const auto& stamp = line.timestamp.empty() ? line.updated : line.timestamp;
    const auto time = TranscriptWatcher::date(stamp.raw);
    time_ = time.value_or(state_.lastActivity);
    state_.lastActivity = std::max(state_.lastActivity, time_);
    if (!line.session.empty() && !line.start.empty()) {
        header(line);
    } else if (line.history) {
        history(line);
    } else if (line.stopsTurn()) {
        calls_.finishAll();
        setPhase(Phase::Case::interrupted, false);
    } else if (line.id.empty() || isReplayed(line)) {
        return;
    } else if (line.type == "user") {
        user(line);
    } else if (line.type == "gemini") {
        gemini(line);
    } else if (line.type == "error") {
        error(line);
    }
}

void Reader::header(const Line& line) {
    hasHeader_ = true;
    state_.session = Text::validUtf8(line.session.decoded());
    state_.isSubagent = line.kind == "subagent";
    state_.startedAt = TranscriptWatcher::date(line.start.raw);
}

void Reader::history(const Line& line) {
    replayedSince_.reset();
    if (auto folder = workspaceFolder(line.opening.decoded())) {
        state_.cwd = std::move(folder);
    }
    // The first of a file tells of no turn; where the tail begins with one, what was before it is not known.
    const bool begins = state_.phaseSince == distantPast && hasHeader_;
    if (turnIsOpen() && !begins) {
        takenBack_ = time_;
        calls_.finishAll();
        setPhase(Phase::Case::interrupted, false);
    }
}

/// A history that is written again opens as every history does, and ends with the patch that holds it whole.
bool Reader::isReplayed(const Line& line) {
    if (line.type == "user" && !line.content.texts.empty() && isSessionContext(line.content.texts.front().decoded())) {
        replayedSince_ = time_;
    } else if (replayedSince_ && time_ > *replayedSince_ + sameMoment) {
        replayedSince_.reset();
    }
    return replayedSince_.has_value();
}

void Reader::setPhase(Phase::Case phase, bool pendingDone) {
    state_.phase = {phase, {}};
    state_.phaseSince = time_;
    state_.pendingDone = pendingDone;
    state_.failure.reset();
    state_.openCall.reset();
}

void Reader::user(const Line& line) {
    if (line.content.answersCall) {
        // A cancelled call is answered, too, and nothing follows.
        if (state_.phase.value != Phase::Case::interrupted) {
            setPhase(Phase::Case::working, false);
        }
        return;
    }
    const std::string words = request(line.shown.texts.empty() ? line.content : line.shown);
    // What the user runs at the prompt with "!" is told to the model with the next request.
    if (Text::trimmed(words).empty() || words.starts_with("I ran the following shell command:")) {
        return;
    }
    if (words != "Please continue." && !words.starts_with("System: ")) {
        state_.prompt = TranscriptWatcher::oneLine(Text::validUtf8(words));
    }
    calls_.finishAll();
    takenBack_.reset();
    setPhase(Phase::Case::working, false);
}

void Reader::gemini(const Line& line) {
    countTokens(line);
    // What the model said is a string; a list is the client's copy of it, or its own filler.
    if (line.content.isList) {
        return;
    }
    const bool silent = line.content.texts.empty() || line.content.texts.front().empty();
    if (!silent) {
        reply_ = line.content.texts.front();
    }
    if (!line.calls.empty()) {
        toolCalls(line);
    } else {
        // A call is written down once it has returned. A reply without words can only be one; another may be.
        setPhase(Phase::Case::working, !silent);
        state_.openCall = {.since = time_, .sentence = silent ? StatusNormalizer::approval({}) : std::string{}};
    }
}

void Reader::toolCalls(const Line& line) {
    for (const Call& call : line.calls) {
        time_ = std::max(time_, TranscriptWatcher::date(call.timestamp.raw).value_or(time_));
    }
    for (const Call& call : line.calls) {
        if (!calls_.knows(call.id)) {
            calls_.begin({.id = call.id,
                          .group = line.id,
                          .name = call.name,
                          .input = call.arguments,
                          .detail = ToolCalls::detailOfObject,
                          .time = time_,
                          .finished = call.returned()});
        } else if (call.returned()) {
            calls_.finish(call.id);
        }
    }
    state_.lastActivity = std::max(state_.lastActivity, time_);
    if (std::ranges::all_of(line.calls, &Call::cancelled)) {
        setPhase(Phase::Case::interrupted, false);
    } else if (state_.phase.value != Phase::Case::interrupted || time_ > state_.phaseSince + sameMoment) {
        setPhase(Phase::Case::working, false);
    }
}

/// The client shows other errors, too; one that ends a turn comes while it is open, or when it has just been taken
/// back.
void Reader::error(const Line& line) {
    const bool endsTurn = turnIsOpen() || (takenBack_ && time_ <= *takenBack_ + sameMoment);
    if (!endsTurn || line.content.texts.empty()) {
        return;
    }
    calls_.finishAll();
    setPhase(Phase::Case::working, true);
    state_.failure = apiErrorLine(line.content.texts.front().decoded());
}

void Reader::countTokens(const Line& line) {
    if (!line.tokens || *line.tokens < 0) {
        return;
    }
    const bool again = line.id.raw == countedID_.raw;
    const auto before = state_.tokens.value_or(0) - (again ? counted_ : 0);
    constexpr std::int64_t beyondBelief = std::int64_t{1} << 40;
    counted_ = std::min(*line.tokens, beyondBelief);
    countedID_ = line.id;
    state_.tokens = before + counted_;
}

std::optional<State> Reader::finish() {
    if (!any_) {
        return std::nullopt;
    }
    // A file may change long after the session: the next one in its folder adds a title.
    if (state_.lastActivity == distantPast) {
        state_.lastActivity = modified_;
    }
    const std::string reply = reply_ ? Text::validUtf8(Text::trimmed(reply_->decoded())) : std::string{};
    state_.summary = TranscriptWatcher::summary(reply);
    state_.markerNeedsYou = TranscriptWatcher::needsYouMarker(reply);
    state_.activity = calls_.activity();
    return std::move(state_);
}

} // namespace

std::optional<TranscriptWatcher::State> TranscriptWatcher::parseGemini(std::span<const std::string_view> lines,
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
