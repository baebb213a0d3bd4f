#include "Agents/StatusNormalizer.h"

#include <gtest/gtest.h>

namespace kippo {

namespace {

std::string describe(const std::optional<AgentStatus>& status) {
    return !status ? "no change" : status->isNeedsYou() ? status->sentence : std::string{rawValue(status->value)};
}

} // namespace

TEST(HookMeanings, AreJudgedByTheAgentsOwnNames) {
    using enum HookMeaning;
    struct Row {
        std::string name;
        std::array<HookMeaning, 4> byAgent; ///< Claude Code, Codex, Cursor, Gemini CLI
    };
    const std::vector<Row> rows{{"SessionStart", {sessionStart, sessionStart, sessionStart, sessionStart}},
                                {"sessionEnd", {sessionEnd, sessionEnd, sessionEnd, sessionEnd}},
                                {"UserPromptSubmit", {promptSubmit, promptSubmit, other, other}},
                                {"beforeSubmitPrompt", {other, other, promptSubmit, other}},
                                {"BeforeAgent", {other, other, other, promptSubmit}},
                                {"PostToolUseFailure", {toolUse, toolUse, toolUse, toolUse}},
                                {"BeforeTool", {other, other, other, toolUse}},
                                {"postToolUse", {other, other, toolUse, other}},
                                {"afterAgentThought", {other, other, toolUse, other}},
                                {"postToolUseFailure", {other, other, other, other}},
                                {"Stop", {stop, stop, stop, stop}},
                                {"stop", {other, other, stop, other}},
                                {"AfterAgent", {other, other, other, stop}},
                                {"StopFailure", {stopFailure, stopFailure, stopFailure, stopFailure}},
                                {"Interrupt", {other, other, other, other}},
                                {"", {other, other, other, other}}};
    for (const Row& row : rows) {
        for (const HookAgent agent : allHookAgents) {
            EXPECT_EQ(meaning(agent, row.name), row.byAgent[static_cast<std::size_t>(agent)])
                << row.name << rawValue(agent);
        }
    }
}

TEST(StatusNormalizer, TurnsMeaningsIntoAStatus) {
    using enum HookMeaning;
    const auto event = [](std::optional<std::string> message, std::optional<std::string> kind = {},
                          std::optional<std::string> tool = {}, std::optional<std::string> status = {}) {
        HookBridge::Event made;
        made.message = std::move(message);
        made.kind = std::move(kind);
        made.tool = std::move(tool);
        made.status = std::move(status);
        return made;
    };
    const AgentStatus working = AgentStatus::working(), idle = AgentStatus::idle(), waits = AgentStatus::needsYou("x");
    struct Row {
        HookMeaning meaning;
        HookBridge::Event event;
        std::optional<AgentStatus> before;
        std::string expected;
    };
    const std::vector<Row> rows{
        {sessionStart, {}, working, "no change"},
        {sessionStart, {}, waits, "idle"},
        {sessionStart, {}, {}, "idle"},
        {sessionEnd, {}, working, "no change"},
        {promptSubmit, {}, waits, "working"},
        {permissionRequest, event({}, {}, "Bash"), working, "Waiting for you to approve a command"},
        {stop, {}, working, "done"},
        {stop, event({}, {}, {}, "error"), working, "Stopped with an error"},
        {stopFailure, event("overloaded"), working, "Stopped: overloaded"},
        {stopFailure, {}, working, "Stopped with an error"},
        {notification, event({}, "permission_prompt"), {}, "Waiting for you"},
        {notification,
         event("Claude needs your permission to use Bash", "permission_prompt"),
         {},
         "Waiting for you to approve a command"},
        {notification, event("pick one", "ToolPermission"), idle, "pick one"},
        {notification, event("x", "idle_prompt"), working, "done"},
        {notification, event("x", "idle_prompt"), waits, "no change"},
        {notification, event("x", "idle_prompt"), {}, "no change"},
        {notification, event("x", "agent_completed"), idle, "done"},
        {notification, event("Permission needed", "other"), idle, "Permission needed"},
        {notification, event("hello"), working, "hello"},
        {notification, event("hello"), idle, "no change"},
        {notification, {}, working, "Waiting for you"},
        {other, event("permission"), working, "no change"},
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(describe(StatusNormalizer::afterHook(rows[i].event, rows[i].meaning, rows[i].before)),
                  rows[i].expected)
            << "row " << i;
    }
}

TEST(StatusNormalizer, SaysWhatAnAgentWaitsFor) {
    const std::vector<std::pair<std::optional<std::string>, std::string>> approvals{
        {{}, "Waiting for your approval"},
        {"", "Waiting for your approval"},
        {"Edit", "Waiting for you to approve a file change"},
        {"Grep", "Waiting for you to let it read files"},
        {"WebFetch", "Waiting for you to approve a web request"},
        {"Task", "Waiting for you to approve a sub-agent"},
        {"ExitPlanMode", "Waiting for you to review its plan"},
        {"AskUserQuestion", "Has a question for you"},
        {"mcp__github__search", "Waiting for you to approve mcp:github__search"},
        {"Thinking", "Waiting for you to approve Thinking"}};
    for (const auto& [tool, sentence] : approvals) {
        EXPECT_EQ(StatusNormalizer::approval(tool), sentence);
    }
    EXPECT_EQ(StatusNormalizer::plain("Codex needs PERMISSION TO USE  Edit \n"),
              "Waiting for you to approve a file change");
    EXPECT_EQ(StatusNormalizer::plain("Claude is waiting for your input"), "Waiting for your reply");
    EXPECT_EQ(StatusNormalizer::plain("Needs your approval"), "Waiting for your approval");
    EXPECT_EQ(StatusNormalizer::plain("Build finished"), "Build finished");
}

} // namespace kippo
