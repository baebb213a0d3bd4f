#include "Agents/AgentInstructions.h"

#include "Fakes/FakeUserFiles.h"

#include <gtest/gtest.h>

namespace kippo {

namespace {

const std::string ownBlock =
    "<!-- kippo:start -->\n"
    "## Kippo (notch status)\n"
    "- When you finish a task, end your final message with one line: `Done: <what you did, in under 12 words>`.\n"
    "- If you stop because you need an answer or a decision from me, end with one line: `Needs you: <the question>`.\n"
    "<!-- kippo:end -->\n";

struct AgentInstructionsTest : testing::Test {
    FakeUserFiles files;
    std::string file = "/home/me/.claude/CLAUDE.md";

    bool install() { return AgentInstructions::install(files, "/home/me", HookAgent::claude).has_value(); }
    bool uninstall() { return AgentInstructions::uninstall(files, "/home/me", HookAgent::claude).has_value(); }
    bool isInstalled() { return AgentInstructions::isInstalled(files, "/home/me", HookAgent::claude); }
};

} // namespace

TEST_F(AgentInstructionsTest, WritesOneBlockAndKeepsTheRest) {
    const std::string legacy = "<!-- varde:start -->\nold\n<!-- varde:end -->";
    for (const auto& [before, rest] : std::vector<std::pair<std::string, std::string>>{
             {"", ""},
             {"# Mine\r\n\xFF", "# Mine\r\n\xFF\n"},
             {"a\n" + legacy + "\n\nb\n", "a\n\nb\n"},
             {"a\n" + ownBlock + "b\n" + legacy + ownBlock, "a\nb\n"},
             {"<!-- kippo:start -->\nno end", "<!-- kippo:start -->\nno end\n"},
         }) {
        files.files = {{file, before}};
        ASSERT_TRUE(install());
        EXPECT_TRUE(isInstalled());
        EXPECT_EQ(files.files[file], rest + ownBlock);
        files.written.clear();
        ASSERT_TRUE(install());
        EXPECT_EQ(files.written, std::vector<std::string>{});
    }
    files.files = {{file, "a\n" + ownBlock + "b"}};
    ASSERT_TRUE(uninstall());
    EXPECT_EQ(files.files[file], "a\nb");
    EXPECT_FALSE(isInstalled());
}

TEST_F(AgentInstructionsTest, WritesNothingWhereThereIsNothingToDo) {
    EXPECT_TRUE(uninstall());
    files.files[file] = "mine";
    EXPECT_TRUE(uninstall());
    EXPECT_TRUE(AgentInstructions::install(files, "/home/me", HookAgent::cursor));
    EXPECT_EQ(files.written, std::vector<std::string>{});
    files.full = {file};
    EXPECT_FALSE(install());
    EXPECT_EQ(files.files[file], "mine");
}

} // namespace kippo
