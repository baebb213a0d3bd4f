#include "Settings/ConnectionState.h"
#include "Settings/SetupGuide.h"
#include "Settings/WatchedName.h"

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

} // namespace
} // namespace kippo
