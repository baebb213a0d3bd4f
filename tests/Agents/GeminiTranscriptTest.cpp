#include "Agents/TranscriptSamples.h"

#include <gtest/gtest.h>

namespace kippo {

namespace {

using samples::phaseName;
using State = TranscriptWatcher::State;

std::string message(const std::string& type, const std::string& content, const std::string& more = "",
                    const std::string& id = "m") {
    return R"({"id":")" + id + R"(","timestamp":"2026-11-21T02:10:00Z","type":")" + type + R"(","content":)" + content +
           (more.empty() ? "" : "," + more) + "}";
}
std::string user(const std::string& text) { return message("user", R"([{"text":")" + text + "\"}]"); }
std::string reply(const std::string& text, const std::string& more = "", const std::string& id = "m") {
    return message("gemini", "\"" + text + "\"", more, id);
}
std::string call(const std::string& status, const std::string& id = "c1", const std::string& command = "ls") {
    return R"({"id":")" + id + R"(","name":"run_shell_command","args":{"command":")" + command + R"("},"status":")" +
           status + R"(","timestamp":"2026-11-21T02:10:05Z"})";
}
std::string calls(const std::string& list) { return reply("", R"("toolCalls":[)" + list + "]"); }
const std::string header = R"({"sessionId":"own","projectHash":"x","startTime":"2026-11-21T02:09:00Z","kind":"main"})";
const std::string history =
    R"({"$set":{"messages":[{"id":"h","type":"user","content":[{"text":"<session_context>\n- **Workspace Directories:**)"
    R"(\n  - /home/dev/a\n  - /home/dev/b\n"},{"text":"old"}]}],"lastUpdated":"2026-11-21T02:10:00Z"}})";
const std::string answer = message("user", R"([{"functionResponse":{"id":"c1","response":{"output":"ok"}}}])");
const std::string failed = message("error", R"("[API Error: {\"error\":{\"code\":500,\"message\":\"Try\\nlater\"}}]")");

State parse(const std::vector<std::string>& lines) {
    const auto state = samples::parse(TranscriptWatcher::parseGemini, lines);
    EXPECT_TRUE(state);
    return state.value_or(State{});
}

} // namespace

// A real terminal session, in which commands were approved, declined and stopped, requests were stopped and one failed.
TEST(GeminiTranscript, FollowsASessionLineByLine) {
    const std::string chats = KIPPO_FIXTURES "/transcripts/gemini/tui-mishaps/work-gemini/chats/";
    std::vector<std::string> lines, seen;
    for (const std::string& line : samples::linesOf(chats + "session-2026-11-21T20-32-b4849d16.jsonl")) {
        samples::write(line, lines, TranscriptWatcher::parseGemini);
        const State state = parse(lines);
        const std::string words = phaseName(state) + " " + state.prompt.value_or("-").substr(0, 8) + " " +
                                  (state.failure ? *state.failure : "") +
                                  (state.activity ? " " + state.activity->text() : "");
        if (seen.empty() || seen.back() != words) {
            seen.push_back(words);
        }
    }
    const std::string listed = "  Ran echo hello > f.txt; ls", touched = "  Ran touch x.txt", slept = "  Ran sleep 12";
    EXPECT_EQ(seen, (std::vector<std::string>{"working - ",
                                              "working List the ",
                                              "working+ List the ",
                                              "working List the" + listed,
                                              "working+ List the" + listed,
                                              "working Second [" + listed,
                                              "working+ Second [" + listed,
                                              "interrupted Second [" + touched,
                                              "working Slow one" + touched,
                                              "working+ Slow one" + touched,
                                              "working Sleep [[" + touched,
                                              "working Sleep [[" + slept,
                                              "working+ Sleep [[" + slept,
                                              "working Cancel [" + slept,
                                              "interrupted Cancel [" + slept,
                                              "working Fails [[" + slept,
                                              "interrupted Fails [[" + slept,
                                              "working+ Fails [[ Fake failure 400 Ran sleep 12",
                                              "working Esc tool" + slept,
                                              "working+ Esc tool" + slept,
                                              "interrupted Esc tool" + slept,
                                              "interrupted Esc tool  Ran sleep 30"}));
    const State end = parse(lines);
    EXPECT_EQ(end.session, "b4849d16-2f03-4a07-8fd2-e6118cb5bc01");
    EXPECT_EQ(end.cwd, "/home/dev/gemini");
    EXPECT_EQ(end.agent, AgentKind::gemini);
    EXPECT_EQ(end.tokens, 7 * 6252) << "a message that is written again counts once";
    EXPECT_EQ(end.summary, "I will look at the folder.");
}

TEST(GeminiTranscript, PhasesOfATurn) {
    const std::string cancelled = message("info", R"("Request cancelled.")");
    for (const auto& [lines, phase] : std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{header, history, user("x")}, "working"},
             {{reply("Done.")}, "working+"},
             {{reply("")}, "working"}, // a call, of which nothing is written yet
             {{reply("Done."), message("info", R"("Update available")")}, "working+"},
             {{user("x"), cancelled}, "interrupted"},
             {{user("x"), cancelled, calls(call("cancelled")), answer}, "interrupted"},
             {{user("x"), cancelled, user("y")}, "working"},
             {{calls(call("cancelled"))}, "interrupted"},
             {{calls(call("cancelled") + "," + call("success", "c2"))}, "working"},
             {{calls(call("error")), answer}, "working"},
             {{user("x"), history}, "interrupted"},
             {{reply("Done."), history}, "working+"},
             {{history}, "interrupted"}, // as the tail of a longer file begins
             {{reply("Done."), R"({"$rewindTo":"m"})"}, "interrupted"},
             {{reply("Done."), user("I ran the following shell command:\\n```sh\\nls")}, "working+"},
             {{reply("Done."), user("<session_context>\\nx"), user("old")}, "working+"},
             {{reply("Done."), message("gemini", R"([{"text":"old"}])"), user("<hook_context>x</hook_context>")},
              "working+"}}) {
        EXPECT_EQ(phaseName(parse(lines)), phase) << lines.back();
    }
}

TEST(GeminiTranscript, RequestReplyAndFailure) {
    const std::string typed = R"("displayContent":[{"text":"Look at @a.cpp"}])";
    for (const auto& [lines, prompt] : std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{user("List  the files")}, "List the files"},
             {{message("user", R"("plain")")}, "plain"},
             {{user("first"), user("Please continue.")}, "first"},
             {{message("user", R"([{"text":"Look at @a.cpp"},{"text":"int main"}])", typed)}, "Look at @a.cpp"},
             {{message("user",
                       R"([{"text":"Read it"},{"text":"\n--- Content from referenced files ---"},{"text":"x"}])")},
              "Read it"}}) {
        EXPECT_EQ(parse(lines).prompt, prompt);
    }
    const State state = parse({header, user("x"), reply(R"(Two.\n\nNeeds you: which port?)")});
    EXPECT_EQ(state.summary, "Two.");
    EXPECT_EQ(state.markerNeedsYou, "which port?");
    EXPECT_EQ(state.startedAt, dateFromUnix(1795226940));
    EXPECT_TRUE(parse({R"({"sessionId":"s","startTime":"","kind":"subagent"})", header}).session == "own");
    EXPECT_TRUE(parse({R"({"sessionId":"s","startTime":"x","kind":"subagent"})"}).isSubagent);

    EXPECT_EQ(parse({user("x"), history, failed}).failure, "Try later");
    EXPECT_EQ(parse({user("x"), failed}).failure, "Try later");
    EXPECT_FALSE(parse({user("x"), failed, user("again")}).failure);
    EXPECT_FALSE(parse({user("x"), reply("Done."), failed}).failure) << "what the client shows between turns";
}

TEST(GeminiTranscript, ActivityIsTheCallThatRunsOrRanLast) {
    const auto shown = [](const std::string& list) { return parse({user("x"), calls(list)}).activity->text(); };
    EXPECT_EQ(shown(call("success")), "Ran ls");
    EXPECT_EQ(shown(call("executing", "c1", "make") + "," + call("success", "c2")), "Running make");
    EXPECT_EQ(parse({calls(call("executing")), calls(call("success"))}).activity->text(), "Ran ls");
    EXPECT_EQ(parse({calls(call("executing")), user("y")}).activity->text(), "Ran ls");
}

TEST(GeminiTranscript, SkipsDamagedLines) {
    EXPECT_FALSE(samples::parse(TranscriptWatcher::parseGemini, {"", "{", "[]", R"({"id":"m","type":"user")"}));
    const State state =
        parse({"{}", R"({"$set":7})", R"({"$set":{"messages":{"a":1}}})", user("x"),
               R"({"id":"m","type":"gemini","content":{"a":1},"toolCalls":[1,{}],"tokens":{"total":-1}})",
               reply("y", R"("tokens":{"total":99999999999999999999})")});
    EXPECT_EQ(phaseName(state), "working+");
    EXPECT_EQ(state.lastActivity, dateFromUnix(1795227000));
}

} // namespace kippo
