#include "Fakes/PrivateHome.h"
#include "Settings/ConnectionState.h"
#include "Settings/FoundAgents.h"
#include "Settings/QuietTime.h"
#include "Settings/SetupGuide.h"
#include "Settings/WatchedName.h"
#include "Support/LocalTime.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace kippo {
namespace {

using namespace std::chrono_literals;

TEST(ConnectionStateTest, OnlyAnEventOfThisConnectionProvesIt) {
    const Date now = dateFromUnix(1795226400);
    const Date earlier = now - 3h;
    struct {
        bool isConnected;
        std::optional<Date> lastEvent, connectedAt;
        std::string sentence;
        bool isProven, hasAdvice;
    } const cases[] = {
        {false, {}, {}, "Not connected", false, false},
        {false, now - 2min, {}, "Not connected; last heard from 2 min ago", false, false},
        {true, {}, {}, "Connected; nothing heard yet", false, true},
        {true, earlier, now - 5min, "Connected; nothing heard yet", false, true},
        {true, earlier, {}, "Connected and heard from 3 hr ago", true, false},
        {true, now - 2min, now - 5min, "Connected and heard from 2 min ago", true, false},
        {true, now + 30s, {}, "Connected and heard from just now", true, false},
    };
    for (const auto& [isConnected, lastEvent, connectedAt, sentence, isProven, hasAdvice] : cases) {
        const ConnectionState state = connectionState(HookAgent::codex, isConnected, lastEvent, connectedAt, now);
        EXPECT_EQ(state.sentence, sentence);
        EXPECT_EQ(state.value == ConnectionState::Case::proven, isProven) << sentence;
        EXPECT_EQ(!state.advice.empty(), hasAdvice) << sentence;
    }
}

TEST(WatchedNameTest, TakesAProgramsNameAndSaysWhyNot) {
    const std::vector<std::string> watched{"goose"};
    EXPECT_EQ(watchedName("  crush ", watched), "crush");
    EXPECT_EQ(watchedName("/usr/local/bin/crush", watched), "crush");
    for (const auto& [typed, reason] : {std::pair{" \t", "Type the name"},
                                        {"/", "Type the name"},
                                        {"crush --yolo", "Only the program's name"},
                                        {"Goose", "“Goose” is on the list already."},
                                        {"codex", "it is Codex."}}) {
        const auto name = watchedName(typed, watched);
        ASSERT_FALSE(name) << typed;
        EXPECT_NE(name.error().find(reason), std::string::npos) << name.error();
    }
}

TEST(SetupGuideTest, SaysWhatSurprisesPeopleAboutEachAgent) {
    for (const auto& [agent, words] : {std::pair{HookAgent::claude, "~/.claude/settings.json"},
                                       {HookAgent::codex, "/hooks"},
                                       {HookAgent::cursor, "~/.cursor/hooks.json"},
                                       {HookAgent::gemini, "Press Disconnect first"}}) {
        EXPECT_TRUE(std::ranges::any_of(setupGuide(agent), [words](const SetupStep& step) {
            return step.text.find(words) != std::string::npos;
        })) << words;
    }
}

TEST(QuietTimeTest, SaysUntilWhen) {
    const Date now = atHour(dateFromUnix(1795226400), 22);
    const Date midnight = startOfLocalDay(now, 1);
    EXPECT_EQ(quietSentence({}, now), "");
    EXPECT_EQ(quietSentence({.until = midnight, .nightUntil = midnight + 6h}, now), "He is quiet until midnight.");
    EXPECT_EQ(quietSentence({.until = {}, .nightUntil = midnight + 6h}, now),
              "He says nothing about bed until 06:00 tomorrow.");
    EXPECT_EQ(quietSentence({.until = {}, .nightUntil = midnight + 6h}, midnight + 1h),
              "He says nothing about bed until 06:00.");
}

TEST(FoundAgentsTest, ByTheirFolderOrTheirProgram) {
    const PrivateHome home;
    const auto isThere = [&home](HookAgent agent) {
        return isOnMachine(agent, home.path(), ":/nowhere:" + home.path("bin"));
    };
    for (const HookAgent agent : allHookAgents) {
        EXPECT_FALSE(isThere(agent));
    }
    home.write(".claude/CLAUDE.md", "");
    home.write("bin/codex", "");
    home.write(".cursor", "a file, and no folder of Cursor's");
    EXPECT_TRUE(isThere(HookAgent::claude));
    EXPECT_TRUE(isThere(HookAgent::codex));
    EXPECT_FALSE(isThere(HookAgent::cursor));
}

} // namespace
} // namespace kippo
