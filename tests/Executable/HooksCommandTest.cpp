// `kippo hooks` and `kippo usage`: what they understand and what they print.

#include "App/Terminal/HooksCommand.h"
#include "App/Terminal/HookFacts.h"
#include "App/Terminal/UsageText.h"
#include "Support/LocalTime.h"

#include <gtest/gtest.h>

namespace kippo::Terminal {
namespace {

constexpr Date now = dateFromUnix(1795226400);

TEST(HooksCommand, UnderstandsItsWords) {
    using enum HooksRequest::Verb;
    const struct {
        Request typed;
        HooksRequest understood;
    } right[] = {
        {{{}, {"--json"}}, {.json = true}},
        {{{"install"}, {"--dry-run"}}, {.verb = install, .isDryRun = true}},
        {{{"remove", "gemini", "claude", "gemini"}, {}},
         {.verb = remove, .agents = {HookAgent::claude, HookAgent::gemini}}},
        {{{"prompt", "codex"}, {}}, {.verb = prompt, .agents = {HookAgent::codex}}},
    };
    for (const auto& [typed, understood] : right) {
        EXPECT_EQ(parseHooks(typed), understood) << testing::PrintToString(typed.words);
    }
    const Request wrong[] = {
        {{"claude"}, {}},    {{"install", "aider"}, {}}, {{"install", "install"}, {}},       {{"install"}, {"--json"}},
        {{}, {"--dry-run"}}, {{"prompt"}, {}},           {{"prompt", "claude", "codex"}, {}}};
    for (const auto& typed : wrong) {
        EXPECT_FALSE(parseHooks(typed)) << testing::PrintToString(typed.words);
    }
}

TEST(HookFacts, FindsTheProgramInAHooksCommand) {
    EXPECT_EQ(programOf("'/opt/it'\\''s/kippo' --kippo-hook --agent claude"), "/opt/it's/kippo");
    EXPECT_EQ(programOf("\"/opt/my kippo\" --kippo-hook"), "/opt/my kippo");
    EXPECT_EQ(programOf("  /opt/my\\ kippo --kippo-hook"), "/opt/my kippo");
    EXPECT_EQ(programOf(""), "");
}

TEST(HookFacts, TheTableSaysWhatIsConnectedAndWhatIsProven) {
    using enum HookFacts::Connection;
    std::vector<HookFacts> agents(4);
    for (std::size_t i = 0; i < agents.size(); ++i) {
        agents[i].agent = allHookAgents[i];
        agents[i].isPresent = agents[i].agent != HookAgent::cursor;
        agents[i].file = "/home/dev/" + std::string{settingsPath(allHookAgents[i])};
    }
    agents[0].connection = agents[1].connection = complete;
    agents[0].executables = {"/usr/bin/kippo"};
    agents[0].lastEvent = now - Seconds{190};
    agents[1].executables = {agents[1].missing = "/gone/kippo"};
    agents[3].connection = unreadable;
    agents[3].error = "It is \x1b[31mno JSON.";
    EXPECT_EQ(hookTable(agents, "/usr/bin/kippo", "/home/dev", now, {}),
              "AGENT         CONNECTED              PROVEN   LAST EVENT  SETTINGS\n"
              "Claude Code   ● yes                  yes      3 min ago   ~/.claude/settings.json\n"
              "Codex         ● to another kippo     not yet              ~/.codex/hooks.json\n"
              "Cursor Agent  – not on this machine                       ~/.cursor/hooks.json\n"
              "Gemini CLI    ● cannot tell                               ~/.gemini/settings.json\n"
              "\n"
              "Codex reports through /gone/kippo, which is not there. “kippo hooks install codex” makes it this one.\n"
              "It is �[31mno JSON.\n");
}

TEST(UsageText, ShowsTheDayTheWeekAndTheProjects) {
    EXPECT_EQ(usageText({}, "/home/dev", now, {}), "Claude Code recorded no usage in the last seven days.\n");
    UsageScanner::Report report;
    report.today = {.tokens = 1'500'000, .cost = 12};
    report.fiveHours = {.tokens = 900, .cost = 0.004};
    report.week[4] = {.tokens = 500, .cost = 0.001};
    report.week[5] = {.tokens = 800'000, .cost = 6.25};
    report.week[6] = report.today;
    report.byProjectToday = {{"/home/dev/api", {.tokens = 1000, .cost = 2}},
                             {"/srv/web", {.tokens = 2000, .cost = 10}}};
    report.bySessionToday = {{"a1", {.tokens = 3000, .cost = 12}}};
    const auto text = usageText(report, "/home/dev", now, {});
    for (const auto* line :
         {"\nToday           1.5M  $12.00\n", "\nLast 5 hours     900  <$0.01\n", "     500  <$0.01  ▌\n",
          "  800.0K   $6.25  ████████████▌\n", "\nToday         1.5M  $12.00  ████████████████████████\n",
          "\nweb                 2.0K  $10.00  /srv/web\napi                 1.0K   $2.00  ~/api\n"}) {
        EXPECT_NE(text.find(line), std::string::npos) << line << "in\n" << text;
    }
    const auto json = usageJson(report, now);
    EXPECT_EQ(json.find('\n'), std::string::npos);
    EXPECT_TRUE(json.starts_with(
        R"({"today":{"tokens":1500000,"cost":12},"fiveHours":{"tokens":900,"cost":0.004},"week":[{"day":)" +
        std::to_string(static_cast<long>(unixSeconds(startOfLocalDay(now, -6))))))
        << json;
    EXPECT_TRUE(json.ends_with(R"("byProjectToday":[{"cwd":"/srv/web","tokens":2000,"cost":10},)"
                               R"({"cwd":"/home/dev/api","tokens":1000,"cost":2}],)"
                               R"("bySessionToday":[{"session":"a1","tokens":3000,"cost":12}]})"))
        << json;
}

} // namespace
} // namespace kippo::Terminal
