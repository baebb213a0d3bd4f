#include "Agents/TranscriptSamples.h"

#include <gtest/gtest.h>

namespace kippo {

namespace {

using samples::phaseName;
using State = TranscriptWatcher::State;

std::string line(const std::string& kind, const std::string& payload) {
    return R"({"timestamp":"2026-11-21T02:10:00.250Z","ordinal":0,"type":")" + kind + R"(","payload":)" + payload + "}";
}
std::string event(const std::string& type, const std::string& more = "") {
    return line("event_msg", R"({"type":")" + type + "\"" + (more.empty() ? "" : "," + more) + "}");
}
std::string response(const std::string& type, const std::string& more) {
    return line("response_item", R"({"type":")" + type + "\"," + more + "}");
}
std::string call(const std::string& name, const std::string& arguments, const std::string& id = "c1") {
    return response("function_call",
                    R"("name":")" + name + R"(","arguments":")" + arguments + R"(","call_id":")" + id + "\"");
}
std::string output(const std::string& id) {
    return response("function_call_output", R"("call_id":")" + id + R"(","output":"ok")");
}

State parse(const std::vector<std::string>& lines) {
    const auto state = samples::parse(TranscriptWatcher::parseCodex, lines);
    EXPECT_TRUE(state);
    return state.value_or(State{});
}

std::string activityText(const std::vector<std::string>& lines) {
    const auto activity = parse(lines).activity;
    return activity ? activity->text() : "none";
}

} // namespace

TEST(CodexTranscript, PhasesOfATurn) {
    const std::string begun = event("task_started"), waits = event("exec_approval_request");
    for (const auto& [lines, phase] : std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{event("task_complete")}, "working+"},
             {{event("task_complete"), begun}, "working"},
             {{event("task_complete"), event("user_message", R"("message":"x")")}, "working"},
             {{event("turn_aborted")}, "interrupted"},
             {{event("turn_aborted"), output("c1")}, "interrupted"},
             {{waits}, "Waiting for you to approve a command"},
             {{event("apply_patch_approval_request")}, "Waiting for you to approve a file change"},
             {{event("elicitation_approval_request")}, "Waiting for your approval"},
             {{waits, event("token_count", R"("info":null)")}, "Waiting for you to approve a command"},
             {{waits, event("agent_message", R"("message":"hm")")}, "Waiting for you to approve a command"},
             {{waits, event("exec_command_begin", R"("call_id":"c1","command":["ls"])")}, "working"},
             {{waits, event("patch_apply_end")}, "working"},
             {{waits, output("c1")}, "working"},
             {{waits, begun}, "working"},
             {{call("exec_command", "{}"), waits,
               event("item_completed", R"("item":{"type":"CommandExecution","id":"c1"})")},
              "working"},
             {{waits, event("item_completed", R"("item":{"type":"FileChange","id":"beyond the tail"})")}, "working"},
             {{waits, event("turn_aborted")}, "interrupted"},
             {{call("request_user_input", "{}")}, "Has a question for you"},
             {{call("request_user_input", "{}"), output("c1")}, "working"},
             {{waits, event("task_complete")}, "working+"}}) {
        EXPECT_EQ(phaseName(parse(lines)), phase) << lines.back();
    }
}

TEST(CodexTranscript, BothGenerationsTellRequestReplyAndTokens) {
    const std::string reply = R"(Looked.\n\nNeeds you: which port?)";
    for (const auto& lines : std::vector<std::vector<std::string>>{
             {event("user_message", R"("message":" List  files ")"),
              event("agent_message", R"("message":")" + reply + "\"")},
             {event("item_completed",
                    R"("item":{"type":"UserMessage","content":[{"type":"text","text":"List files"}]})"),
              event("item_completed",
                    R"("item":{"type":"AgentMessage","content":[{"type":"Text","text":")" + reply + "\"}]}")},
             {event("user_message", R"("message":"List files")"),
              response("message", R"("role":"user","content":[{"type":"input_text","text":"not this"}])"),
              response("message", R"("role":"assistant","content":[{"type":"output_text","text":")" + reply + "\"}]")},
             {event("user_message", R"("message":"List files")"),
              event("task_complete", R"("last_agent_message":")" + reply + "\"")}}) {
        auto all = lines;
        all.push_back(event("token_count", R"("info":{"total_token_usage":{"input_tokens":1,"total_tokens":6242}})"));
        all.push_back(event("token_count", R"("info":null)"));
        const auto state = parse(all);
        EXPECT_EQ(state.prompt, "List files");
        EXPECT_EQ(state.summary, "Looked.");
        EXPECT_EQ(state.markerNeedsYou, "which port?");
        EXPECT_EQ(state.tokens, 6242);
    }
    EXPECT_FALSE(parse({event("user_message", R"("message":"<environment_context>\n<cwd>/x</cwd>")")}).prompt);
    EXPECT_FALSE(parse({event("user_message", R"("message":"# AGENTS.md instructions for /x")")}).prompt);
    EXPECT_EQ(
        parse({event("user_message", R"("message":"# Context from my IDE setup:\n## My request for Codex:\nGo")")})
            .prompt,
        "Go");
}

TEST(CodexTranscript, ActivityOfEachKindOfCall) {
    const std::string patch = R"(*** Begin Patch\n*** Add File: new.txt\n+x\n*** Update File: src/a.cpp\n@@\n)";
    for (const auto& [next, expected] : std::vector<std::pair<std::string, std::string>>{
             {call("exec_command", R"({\"cmd\":\"make  -j2\",\"workdir\":\"/x\"})"), "Running make -j2"},
             {call("shell", R"({\"command\":\"ls\"})"), "Running ls"},
             {call("shell", R"({\"action\":{\"command\":\"ls -l\"}})"), "Running ls -l"},
             {call("apply_patch", R"({\"input\":\"*** Begin Patch\\n*** Add File: a/new.txt\"})"), "Editing new.txt"},
             {call("exec_command", "not json"), "Running a command"},
             {call("update_plan", R"({\"plan\":[]})"), "Updating its plan"},
             {response("custom_tool_call", R"("name":"apply_patch","input":")" + patch + "\""), "Editing a.cpp"},
             {response("custom_tool_call", R"("name":"apply_patch","input":"*** Delete File: old.txt")"),
              "Editing old.txt"},
             {response("local_shell_call", R"("action":{"type":"exec","command":["ls"]})"), "Running ls"},
             {response("web_search_call", R"("status":"completed","action":{"type":"search","query":"qt 6"})"),
              "Browsed qt 6"},
             {response("reasoning", R"("summary":[])"), "Thinking"},
             {event("agent_reasoning", R"("text":"hm")"), "Thinking"},
             {event("exec_command_begin", R"("call_id":"c9","command":["ls"])"), "Running ls"},
             {event("patch_apply_begin", R"("call_id":"c9","changes":{"/home/dev/b.txt":{"add":{}}})"),
              "Editing b.txt"},
             {event("web_search_begin", R"("call_id":"c9")"), "Searching the web"}}) {
        EXPECT_EQ(activityText({next}), expected) << next;
    }
}

TEST(CodexTranscript, CallsAreFinishedByTheirOwnOutput) {
    const auto one = call("exec_command", R"({\"cmd\":\"one\"})", "a");
    const auto two = call("exec_command", R"({\"cmd\":\"two\"})", "b");
    EXPECT_EQ(activityText({one, output("a")}), "Ran one");
    EXPECT_EQ(activityText({one, two, output("b")}), "Running one");
    EXPECT_EQ(activityText({one, two, output("a")}), "Running two");
    EXPECT_EQ(activityText({one, two, output("a"), output("b")}), "Ran two");
    EXPECT_EQ(activityText({one, event("task_complete")}), "Ran one");
    // The call's own words stay when the older generation's event tells of the same step, and a running command is not
    // renamed by input to it.
    EXPECT_EQ(activityText({one, event("exec_command_begin", R"("call_id":"a","command":["bash","-c","one"])")}),
              "Running one");
    EXPECT_EQ(activityText({one, event("exec_command_begin", R"("call_id":"a","command":["x"])"),
                            event("exec_command_end", R"("call_id":"a")")}),
              "Ran one");
    EXPECT_EQ(activityText({one, output("a"), call("write_stdin", R"({\"chars\":\"\"})", "b")}), "Running one");
}

// What may be waiting for the user, though the file never says so.
TEST(CodexTranscript, LeavesCallsOpenThatNeedApproval) {
    const auto escalated = call("exec_command", R"({\"cmd\":\"ls\",\"sandbox_permissions\":\"require_escalated\"})");
    const auto context = [](const std::string& more) { return line("turn_context", R"({"cwd":"/x",)" + more + "}"); };
    const std::string command = "Waiting for you to approve a command";
    for (const auto& [lines, sentence] : std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{escalated}, command},
             {{context(R"("approval_policy":"on-request","approvals_reviewer":"user")"), escalated}, command},
             {{context(R"("approval_policy":"never")"), escalated}, "none"},
             {{context(R"("approvals_reviewer":"guardian")"), escalated}, "none"},
             {{escalated, output("c2")}, command},
             {{escalated, output("c1")}, "none"},
             {{escalated, event("item_completed", R"("item":{"type":"CommandExecution","id":"c1"})")}, "none"},
             {{escalated, event("turn_aborted")}, "none"},
             {{call("exec_command", R"({\"cmd\":\"ls\"})")}, "none"},
             {{response("custom_tool_call", R"("name":"apply_patch","input":"x","call_id":"c1")")},
              "Waiting for you to approve a file change"}}) {
        const auto open = parse(lines).openCall;
        EXPECT_EQ(open ? open->sentence : "none", sentence) << lines.back();
    }
}

TEST(CodexTranscript, MetaTellsWhoAndWhere) {
    const auto meta = [](const std::string& id, const std::string& more) {
        return line("session_meta", R"({"id":")" + id + R"(","cwd":"/home/dev/a",)" + more + "}");
    };
    struct Row {
        std::string more;
        std::optional<bool> interactive;
        bool isSubagent;
    };
    for (const auto& row :
         std::vector<Row>{{R"("originator":"codex_exec","source":"exec")", false, false},
                          {R"("originator":"codex-tui","source":"vscode","thread_source":"user")", true, false},
                          {R"("originator":"codex_cli_rs","source":"cli")", true, false},
                          {R"("originator":"codex_vscode","source":"vscode")", std::nullopt, false},
                          {R"("originator":"x","source":{"subagent":{"thread_spawn":{"parent_thread_id":"p"}}})",
                           std::nullopt, true},
                          {R"("originator":"x","thread_source":"subagent")", std::nullopt, true}}) {
        const auto state = parse({meta("own", row.more)});
        EXPECT_EQ(state.interactive, row.interactive) << row.more;
        EXPECT_EQ(state.isSubagent, row.isSubagent) << row.more;
    }
    const auto state = parse({meta("own", R"("source":"cli")"), meta("forked-from", R"("source":"exec")"),
                              line("turn_context", R"({"cwd":"/home/dev/b"})")});
    EXPECT_EQ(state.session, "own");
    EXPECT_EQ(state.cwd, "/home/dev/b");
    EXPECT_EQ(state.agent, AgentKind::codex);
    EXPECT_FALSE(state.entrypoint);
    EXPECT_EQ(parse({event("task_started")}).session, "fallback");
}

TEST(CodexTranscript, Failures) {
    EXPECT_EQ(parse({event("task_complete", R"("error":{"message":"Usage limit\n reached"})")}).failure,
              "Usage limit reached");
    EXPECT_EQ(parse({event("task_complete", R"("error":"no network")")}).failure, "no network");
    const std::string answer = R"("error":{"message":"{\"error\":{\"message\":\"No such model\",\"type\":\"x\"}}"})";
    EXPECT_EQ(parse({event("task_complete", answer)}).failure, "No such model");
    EXPECT_FALSE(parse({event("task_complete", R"("error":null)")}).failure);
    EXPECT_FALSE(parse({event("error", R"("message":"no network")"), event("task_started")}).failure);
    EXPECT_EQ(phaseName(parse({event("error", R"("message":"no network")")})), "working+");
}

TEST(CodexTranscript, SkipsDamagedLines) {
    EXPECT_FALSE(
        samples::parse(TranscriptWatcher::parseCodex, {"", "{", "[]", "{\"type\":\"event_msg\",\"payload\":{"}));
    const auto state = parse({"{}", line("event_msg", "null"), line("event_msg", R"({"":1,"type":7})"),
                              line("response_item", R"({"type":"message","role":"assistant","content":{"a":1}})"),
                              call("exec_command", R"({\"cmd\":[1,{}]})"), event("item_completed", R"("item":[])")});
    EXPECT_EQ(phaseName(state), "working");
    EXPECT_EQ(state.activity->text(), "Running a command");
    EXPECT_EQ(state.lastActivity, dateFromUnix(1795227000.25));
}

} // namespace kippo
