#include "Agents/TranscriptSamples.h"

#include <gtest/gtest.h>

namespace kippo {

namespace {

using samples::phaseName;
using State = TranscriptWatcher::State;

/// A line of the given type with a message, written at second `second` of the same minute.
std::string line(const std::string& type, int second, const std::string& message, const std::string& more = "") {
    return R"({"type":")" + type + R"(","isSidechain":false,"sessionId":"s1","cwd":"/home/dev/app","timestamp":")" +
           "2026-11-21T02:10:" + (second < 10 ? "0" : "") + std::to_string(second) + R"(.500Z",)" + more +
           R"("message":)" + message + "}";
}

std::string user(int second, const std::string& text, const std::string& more = "") {
    return line("user", second, R"({"role":"user","content":")" + text + "\"}", more);
}

std::string result(int second, const std::string& id) {
    return line("user", second,
                R"({"role":"user","content":[{"type":"tool_result","tool_use_id":")" + id + R"(","content":"ok"}]})");
}

std::string assistant(int second, const std::string& content, const std::string& stop, const std::string& more = "") {
    return line("assistant", second,
                R"({"id":"m1","role":"assistant","model":"claude","content":[)" + content + R"(],"stop_reason":)" +
                    stop + "}",
                more);
}

std::string text(const std::string& words) { return R"({"type":"text","text":")" + words + "\"}"; }

std::string tool(const std::string& name, const std::string& id, const std::string& command) {
    return R"({"type":"tool_use","id":")" + id + R"(","name":")" + name + R"(","input":{"command":")" + command +
           "\"}}";
}

const std::string toolUse = "\"tool_use\"", endTurn = "\"end_turn\"";

State parse(const std::vector<std::string>& lines) {
    const auto state = samples::parse(TranscriptWatcher::parseClaude, lines);
    EXPECT_TRUE(state);
    return state.value_or(State{});
}

Date at(double second) { return dateFromUnix(1795227000 + second); }

} // namespace

TEST(ClaudeTranscript, FollowsATurnLineByLine) {
    std::vector<std::string> lines;
    const auto expectAfter = [&lines](const std::string& next, const std::string& phase, double since) {
        lines.push_back(next);
        const auto state = parse(lines);
        EXPECT_EQ(phaseName(state), phase) << next;
        EXPECT_EQ(state.phaseSince, at(since)) << next;
    };
    expectAfter(user(1, "Fix   it\\n please"), "working", 1.5);
    expectAfter(assistant(2, R"({"type":"thinking","thinking":"hm"})", "null"), "working+", 2.5);
    EXPECT_EQ(parse(lines).activity->kind, AgentActivity::Kind::thinking);
    expectAfter(assistant(3, tool("Bash", "t1", "make"), toolUse), "working", 3.5);
    EXPECT_EQ(parse(lines).activity->text(), "Running make");
    expectAfter(result(4, "t1"), "working", 4.5);
    EXPECT_EQ(parse(lines).activity->text(), "Ran make");
    expectAfter(assistant(5, text("All good.\\n\\n**Done:** fixed it "), endTurn), "working+", 5.5);
    // What the client writes afterwards neither moves the turn nor the session.
    expectAfter(R"({"type":"system","subtype":"turn_duration","timestamp":"2026-11-21T02:10:06Z"})", "working+", 5.5);
    expectAfter(user(7, "<command-name>/cost</command-name>"), "working+", 5.5);
    expectAfter(user(8, "<local-command-stdout>ok</local-command-stdout>"), "working+", 5.5);
    expectAfter(user(9, "Caveat: hidden", R"("isMeta":true,)"), "working+", 5.5);
    expectAfter(
        R"({"type":"assistant","isSidechain":true,"timestamp":"2026-11-21T02:10:30Z","message":{"content":[]}})",
        "working+", 5.5);

    const auto state = parse(lines);
    EXPECT_EQ(state.session, "s1");
    EXPECT_EQ(state.cwd, "/home/dev/app");
    EXPECT_EQ(state.prompt, "Fix it please");
    EXPECT_EQ(state.summary, "fixed it");
    EXPECT_EQ(state.lastActivity, at(8.5));
    EXPECT_FALSE(state.isSubagent);
    EXPECT_FALSE(state.failure);
}

TEST(ClaudeTranscript, TellsByTheLastLineWhatWasAskedAndWhetherTheTurnGoesOn) {
    struct Row {
        std::string line;
        std::optional<std::string> prompt;
        std::string phase;
    };
    const std::string before = "the request";
    for (const auto& row : std::vector<Row>{
             {user(6, "Another thing"), "Another thing", "working"},
             {user(6, ""), before, "working+"},
             {user(6, " \\n\\t "), before, "working+"},
             {user(6, "<bash-input>ls</bash-input>"), before, "working+"},
             {user(6, "<system-reminder>be kind</system-reminder>"), before, "working+"},
             {user(6, "<system-reminder>be kind</system-reminder>\\nGo on"), "Go on", "working"},
             {user(6, "<ide_opened_file>a.cpp</ide_opened_file>Explain"), "Explain", "working"},
             {user(6, "<task-notification>build over</task-notification>"), before, "working"},
             {user(6, "wake up", R"("origin":{"kind":"task-notification"},)"), before, "working"},
             {user(6, "typed", R"("origin":{"kind":"human"},)"), "typed", "working"},
             {user(6, "This session is continued; [Request interrupted by user] once", R"("isCompactSummary":true,)"),
              before, "working+"},
             {line("user", 6,
                   R"({"content":[{"type":"image"},{"type":"text","text":"See"},{"type":"text","text":"it"}]})"),
              "See it", "working"},
             {user(6, "[Request interrupted by user]"), before, "interrupted"},
             {line("user", 6, R"({"content":[{"type":"text","text":"[Request interrupted by user for tool use]"}]})"),
              before, "interrupted"},
             {line("user", 6, R"("text")"), before, "working+"},
             {assistant(6, text("Hi"), toolUse), before, "working"},
             {assistant(6, text("Hi"), "\"max_tokens\""), before, "working+"},
             // While it is still being written, a reply that calls a tool cannot have ended the turn.
             {assistant(6, tool("Read", "t", "x"), "null"), before, "working"},
         }) {
        const auto state = parse({user(1, "the request"), assistant(5, text("Ok."), endTurn), row.line});
        EXPECT_EQ(state.prompt, row.prompt) << row.line;
        EXPECT_EQ(phaseName(state), row.phase) << row.line;
    }
}

TEST(ClaudeTranscript, EachResultAnswersItsOwnCall) {
    std::vector<std::string> lines{user(1, "go"), assistant(2, tool("Bash", "a", "one"), toolUse),
                                   assistant(3, tool("AskUserQuestion", "q", ""), toolUse),
                                   assistant(4, tool("Bash", "b", "two"), toolUse), result(5, "b")};
    EXPECT_EQ(phaseName(parse(lines)), "Has a question for you");
    EXPECT_EQ(parse(lines).activity->tool, "AskUserQuestion"); // "b" has returned, this one waits
    lines.push_back(result(6, "q"));
    EXPECT_EQ(phaseName(parse(lines)), "working");
    EXPECT_EQ(parse(lines).activity->text(), "Running one");
    lines.push_back(result(7, "a"));
    EXPECT_TRUE(parse(lines).activity->finished);
}

TEST(ClaudeTranscript, WaitingCallsNeedTheUserUntilTheyAreAnsweredOrDropped) {
    const std::vector<std::string> asked{user(1, "go"), assistant(2, tool("ExitPlanMode", "p", ""), toolUse)};
    EXPECT_EQ(phaseName(parse(asked)), "Waiting for you to review its plan");
    for (const auto& [next, phase] : std::vector<std::pair<std::string, std::string>>{
             {result(3, "p"), "working"},
             {line("user", 3, R"({"content":[{"type":"tool_result"}]})"), "working"},
             {result(3, "unknown"), "Waiting for you to review its plan"},
             {user(3, "[Request interrupted by user for tool use]"), "interrupted"},
             {user(3, "Something else"), "working"}}) {
        auto lines = asked;
        lines.push_back(next);
        EXPECT_EQ(phaseName(parse(lines)), phase) << next;
    }
}

TEST(ClaudeTranscript, FailuresOfTheApi) {
    const auto error = line("assistant", 2,
                            R"({"model":"<synthetic>","content":[{"type":"text","text":"API Error: 500\nTry again"}],)"
                            R"("stop_reason":"stop_sequence"})",
                            R"("isApiErrorMessage":true,)");
    const auto filler =
        line("assistant", 2, R"({"model":"<synthetic>","content":[{"type":"text","text":"No response requested."}]})");
    EXPECT_EQ(parse({user(1, "go"), error}).failure, "API Error: 500 Try again");
    EXPECT_EQ(phaseName(parse({user(1, "go"), error})), "working+");
    EXPECT_FALSE(parse({user(1, "go"), error, user(3, "again")}).failure);
    EXPECT_FALSE(parse({error, assistant(3, text("Here."), endTurn)}).failure);
    EXPECT_FALSE(parse({assistant(1, text("Here."), endTurn), filler}).failure);
    EXPECT_EQ(parse({assistant(1, text("Here."), endTurn), filler}).summary, "Here.");
}

TEST(ClaudeTranscript, SaysHowTheSessionWasStarted) {
    const std::pair<std::string, std::optional<bool>> starts[] = {
        {"cli", true}, {"sdk-cli", false}, {"sdk-ts", false}, {"claude-desktop", std::nullopt}, {"", std::nullopt}};
    for (const auto& [entrypoint, interactive] : starts) {
        const auto state = parse({user(1, "go", R"("entrypoint":")" + entrypoint + "\",")});
        EXPECT_EQ(state.interactive, interactive) << entrypoint;
        EXPECT_EQ(state.entrypoint, entrypoint.empty() ? std::nullopt : std::optional{entrypoint});
    }
}

TEST(ClaudeTranscript, SubAgentsOwnFilesAreNoSessions) {
    const std::string sidechain =
        R"({"type":"user","isSidechain":true,"sessionId":"parent","message":{"content":"x"}})";
    const auto own = parse({sidechain});
    EXPECT_TRUE(own.isSubagent);
    EXPECT_EQ(own.session, "fallback") << "it must not be taken for its parent";
    EXPECT_FALSE(parse({sidechain, user(1, "x")}).isSubagent);
    // A session's own file whose end happens to hold nothing but a sub-agent's work.
    EXPECT_FALSE(parse({R"({"type":"user","isSidechain":true,"sessionId":"fallback"})"}).isSubagent);
}

TEST(ClaudeTranscript, SkipsWhatIsNoWholeObject) {
    const auto parsed = [](const std::vector<std::string>& lines) {
        return samples::parse(TranscriptWatcher::parseClaude, lines).has_value();
    };
    EXPECT_FALSE(parsed({}));
    EXPECT_FALSE(parsed({"", "null", "[1]", "\"type\"", "{", R"({"type":"user")", R"({"type":"user"} x)", "\xFF\xFE"}));
    EXPECT_TRUE(parsed({"{}"}));
    // A key inside a text, or a deeper one, is not the line's own.
    const auto state = parse({user(1, R"({\"type\":\"assistant\",\"sessionId\":\"evil\"})"),
                              R"({"toolUseResult":{"type":"user","sessionId":"evil","message":{"content":"evil"}}})",
                              user(2, "cut").substr(0, 60), std::string(100000, '['),
                              R"({"message":)" + std::string(100000, '[') + "}"});
    EXPECT_EQ(state.session, "s1");
    EXPECT_EQ(state.prompt, R"({"type":"assistant","sessionId":"evil"})");
    EXPECT_EQ(state.lastActivity, at(1.5));
}

TEST(ClaudeTranscript, RepairsTextAndFallsBackToTheFile) {
    EXPECT_EQ(parse({R"({"t\u0079pe":"us\u0065r","message":{"content":"a\ud83d\ude00b\ud83dc \u00e9"}})"}).prompt,
              "a😀b\uFFFDc é");
    EXPECT_EQ(parse({user(1, "bad \xFF byte")}).prompt, "bad \uFFFD byte");
    const auto bare = parse({R"({"type":"user","message":{"content":"x"},"timestamp":"soon"})"});
    EXPECT_EQ(bare.session, "fallback");
    EXPECT_EQ(bare.lastActivity, samples::modified);
    EXPECT_EQ(bare.phaseSince, samples::modified);
    // A request beyond the reach of the tail is still known from the client's note of it.
    EXPECT_EQ(parse({R"({"type":"last-prompt","lastPrompt":"older"})"}).prompt, "older");
    EXPECT_EQ(parse({user(1, "newer"), R"({"type":"last-prompt","lastPrompt":"older"})"}).prompt, "newer");
    EXPECT_EQ(parse({"{}"}).phaseSince, distantPast);
}

} // namespace kippo
