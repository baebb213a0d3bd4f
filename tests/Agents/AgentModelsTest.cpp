#include "Agents/AgentModels.h"

#include <cmath>
#include <gtest/gtest.h>

namespace kippo {

TEST(AgentActivity, KnowsTheKindOfWorkByTheToolsName) {
    using Kind = AgentActivity::Kind;
    const std::vector<std::pair<Kind, std::vector<std::string>>> kinds{
        {Kind::tool, {"MCP__github__search", "agents", ""}},
        {Kind::plan, {"TodoWrite", "ExitPlanMode"}},
        {Kind::thinking, {"Thinking"}},
        {Kind::shell, {"Bash", "run_shell_command", "exec_command"}},
        {Kind::edit, {"NotebookEdit", "apply_patch", "replace"}},
        {Kind::search, {"Grep", "search_file", "search_file_content", "find"}},
        {Kind::web, {"WebSearch", "google_web_search"}},
        {Kind::read, {"LS", "read_many_files"}},
        {Kind::delegate, {"Task", "Agent"}}};
    for (const auto& [kind, tools] : kinds) {
        for (const auto& tool : tools) {
            EXPECT_EQ(AgentActivity::kindOf(tool), kind) << tool;
        }
    }
}

TEST(AgentActivity, SaysWhatItDoesInOneSentence) {
    struct Row {
        std::string tool;
        std::optional<std::string> detail;
        std::string now, after;
    };
    const std::vector<Row> rows{
        {"Bash", "cargo test\nsecond line", "Running cargo test", "Ran cargo test"},
        {"Bash", {}, "Running a command", "Ran a command"},
        {"Edit", "/home/dev/app/src/main.cpp", "Editing main.cpp", "Edited main.cpp"},
        {"Write", {}, "Editing a file", "Edited a file"},
        {"Read", "/a/b.txt", "Reading b.txt", "Read b.txt"},
        {"Read", {}, "Reading a file", "Read a file"},
        {"Grep", "TODO", "Searching for “TODO”", "Searching for “TODO”"},
        {"Grep", {}, "Searching the code", "Searching the code"},
        {"WebFetch", "https://example.org/a/b?c", "Browsing example.org", "Browsed example.org"},
        {"WebSearch", {}, "Searching the web", "Searching the web"},
        {"Task", "Find callers", "Sub-agent: Find callers", "Sub-agent: Find callers"},
        {"Task", {}, "Running a sub-agent", "Running a sub-agent"},
        {"TodoWrite", {}, "Updating its plan", "Updating its plan"},
        {"mcp__github__search", "x", "Using mcp:github__search", "Using mcp:github__search"},
        {"Bash", " \n", "Running a command", "Ran a command"},
    };
    for (const Row& row : rows) {
        AgentActivity activity{AgentActivity::kindOf(row.tool), row.tool, row.detail, false, {}};
        EXPECT_EQ(activity.text(), row.now);
        activity.finished = true;
        EXPECT_EQ(activity.text(), row.after);
    }
}

TEST(AgentSession, SaysWhereItStands) {
    const Date now = dateFromUnix(1795226400);
    AgentSession session;
    session.id = "s";
    session.lastEvent = now - Seconds{150};
    const auto says = [&] { return session.sentence(true) + " | " + session.timeline(now); };
    EXPECT_EQ(says(), "Ended | Quiet for 2 min");
    session.rootPID = 10;
    EXPECT_EQ(session.sentence(true), "Open, not busy");
    session.status = AgentStatus::needsYou("Has a question for you");
    EXPECT_EQ(says(), "Has a question for you | Waiting 2 min");
    session.status = AgentStatus::done();
    EXPECT_EQ(says(), "Finished | Finished 2 min ago");
    session.summary = "added the test";
    EXPECT_EQ(session.sentence(true), "added the test");
    session.status = AgentStatus::working();
    session.workingSince = now - Seconds{3700};
    EXPECT_EQ(says(), "Working | Active 1 hr so far");
    session.prompt = "Fix it";
    EXPECT_EQ(session.sentence(true), "Working on: Fix it");
    EXPECT_EQ(session.sentence(false), "Working");
    session.activity = AgentActivity{AgentActivity::Kind::shell, "Bash", "ls", false, now};
    EXPECT_EQ(session.sentence(true), "Running ls");
    session.workingSince = now - Seconds{5};
    EXPECT_EQ(session.timeline(now), "Just started");

    EXPECT_EQ(session.project(), "Claude Code");
    session.cwd = "/home/dev/app/";
    EXPECT_EQ(session.project(), "app");
    session.customName = "mytool";
    EXPECT_EQ(session.title(), "mytool");
}

TEST(Formatters, RoundAsPeopleRead) {
    using namespace Formatters;
    EXPECT_EQ(tokens(999), "999");
    EXPECT_EQ(tokens(1000), "1.0K");
    EXPECT_EQ(tokens(999999), "1000.0K");
    EXPECT_EQ(tokens(1000000), "1.0M");
    const std::vector<std::pair<double, std::string>> durations{
        {-5, "under a minute"},   {NAN, "under a minute"}, {INFINITY, "under a minute"},
        {59.9, "under a minute"}, {60, "1 min"},           {3599, "59 min"},
        {3600, "1 hr"},           {86399, "23 hr"},        {86400, "1 day"},
        {172799, "1 day"},        {172800, "2 days"}};
    for (const auto& [seconds, text] : durations) {
        EXPECT_EQ(friendlyDuration(seconds), text) << seconds;
    }
    EXPECT_EQ(duration(7.9), "0:07");
    EXPECT_EQ(duration(3723), "1:02:03");
    EXPECT_EQ(memory(900), "900 KB");
    EXPECT_EQ(memory(212 * 1024), "212 MB");
    EXPECT_EQ(memory(1468006), "1.4 GB");
}

} // namespace kippo
