// `kippo doctor` and `kippo leftovers`: what they make of the facts.

#include "App/Terminal/Doctor.h"
#include "Agents/UsageSamples.h"
#include "App/Terminal/CodexHooks.h"
#include "App/Terminal/LeftoversText.h"
#include "Executable/Shell.h"
#include "Support/Text.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

namespace kippo::Terminal {
namespace {

constexpr Date now = dateFromUnix(1795226400);

/// A machine on which all is as it should be: two agents, connected and proven.
DoctorFacts healthy() {
    DoctorFacts facts;
    facts.now = now;
    facts.home = "/home/dev";
    facts.executable = "/usr/bin/kippo";
    facts.hasApplication = true;
    facts.applicationPID = 4711;
    facts.hook = HookProbe{.time = Seconds{0.0012}, .wrote = true};
    for (const auto agent : {HookAgent::claude, HookAgent::codex}) {
        DoctorFacts::Agent one;
        one.hooks.agent = agent;
        one.hooks.isPresent = true;
        one.hooks.program = "/usr/bin/agent";
        one.hooks.file = "/home/dev/" + std::string{settingsPath(agent)};
        one.hooks.connection = HookFacts::Connection::complete;
        one.hooks.executables = {facts.executable};
        one.hooks.lastEvent = now - Seconds{300};
        one.settingsWritten = now - Seconds{90000};
        one.transcriptWritten = now - Seconds{290};
        facts.agents.push_back(one);
    }
    facts.codexTrust = DoctorFacts::CodexTrust::trusted;
    for (auto* file : {&facts.logFile, &facts.supportFolder, &facts.configFolder, &facts.settings}) {
        *file = {.path = "/home/dev/.local/share/Kippo", .exists = true, .obstacle = {}, .size = 5000};
    }
    facts.log.events = 12;
    facts.display = ":0";
    facts.displayAnswers = true;
    facts.hasBus = true;
    facts.hasTray = true;
    facts.hasKeyring = true;
    return facts;
}

TEST(Doctor, FindsNothingOnAHealthyMachine) {
    for (const auto& check : judge(healthy())) {
        EXPECT_EQ(check.state, Check::State::well) << check.id << ": " << check.sentence;
    }
    EXPECT_TRUE(doctorText(judge(healthy()), {}).ends_with("\nAll is well.\n"));
}

TEST(Doctor, FindsEachFaultAndSaysWhatToDo) {
    using enum Check::State;
    using Connection = HookFacts::Connection;
    const struct {
        std::string id;
        Check::State state;
        std::function<void(DoctorFacts&)> breakIt;
    } faults[] = {
        {"hook", ill, [](auto& facts) { facts.hook.reset(); }},
        {"hook", ill, [](auto& facts) { facts.hook->wrote = false; }},
        {"hook", note, [](auto& facts) { facts.hook->time = Seconds{0.2}; }},
        {"executable", note, [](auto& facts) { facts.isInBuildTree = true; }},
        {"hooks.claude", note, [](auto& facts) { facts.agents[0].hooks.connection = Connection::none; }},
        {"hooks.claude", ill, [](auto& facts) { facts.agents[0].hooks.connection = Connection::partial; }},
        {"hooks.claude", ill,
         [](auto& facts) {
             facts.agents[0].hooks.connection = Connection::unreadable;
             facts.agents[0].hooks.error = "no JSON";
         }},
        {"hooks.codex", ill,
         [](auto& facts) {
             facts.agents[1].hooks.executables = {"/gone/kippo"};
             facts.agents[1].hooks.missing = "/gone/kippo";
         }},
        {"hooks.codex", note, [](auto& facts) { facts.agents[1].hooks.executables = {"/opt/kippo"}; }},
        {"enabled.claude", ill, [](auto& facts) { facts.agents[0].areHooksOff = true; }},
        {"home.codex", ill, [](auto& facts) { facts.agents[1].otherHome = "/srv/codex"; }},
        {"transcripts.claude", ill, [](auto& facts) { facts.agents[0].unreadableTranscripts = "/x"; }},
        {"trust.codex", ill, [](auto& facts) { facts.codexTrust = DoctorFacts::CodexTrust::untrusted; }},
        {"trust.codex", ill, [](auto& facts) { facts.codexTrust = DoctorFacts::CodexTrust::changed; }},
        {"trust.codex", ill, [](auto& facts) { facts.codexTrust = DoctorFacts::CodexTrust::disabled; }},
        {"trust.codex", note, [](auto& facts) { facts.codexTrust = DoctorFacts::CodexTrust::unknown; }},
        {"events.claude", ill, [](auto& facts) { facts.agents[0].hooks.lastEvent = now - Seconds{7200}; }},
        {"events.claude", ill, [](auto& facts) { facts.agents[0].hooks.lastEvent.reset(); }},
        {"events.claude", note,
         [](auto& facts) {
             facts.agents[0].hooks.lastEvent.reset();
             facts.agents[0].settingsWritten = now - Seconds{280};
         }},
        {"log", ill, [](auto& facts) { facts.logFile.obstacle = "/home/dev"; }},
        {"log", ill, [](auto& facts) { facts.isDiskFull = true; }},
        {"log.lines", note, [](auto& facts) { facts.log.damaged = 2; }},
        {"clock", ill, [](auto& facts) { facts.log.fromTheFuture = 1; }},
        {"folder.data", ill, [](auto& facts) { facts.supportFolder.isPrivate = false; }},
        {"folder.data", ill, [](auto& facts) { facts.supportFolder.isOurs = false; }},
        {"folder.settings", ill, [](auto& facts) { facts.configFolder.obstacle = "/home/dev"; }},
        {"settings", ill, [](auto& facts) { facts.areSettingsReadable = false; }},
        {"watching", ill, [](auto& facts) { facts.canWatchFiles = false; }},
        {"display", ill, [](auto& facts) { facts.displayAnswers = false; }},
        {"display", aside, [](auto& facts) { facts.display.reset(); }},
        {"tray", note, [](auto& facts) { facts.hasTray = false; }},
        {"tray", aside, [](auto& facts) { facts.hasTray.reset(); }},
        {"keyring", aside, [](auto& facts) { facts.hasKeyring = false; }},
        {"keyring", ill,
         [](auto& facts) {
             facts.hasKeyring = false;
             facts.needsKeyring = true;
         }},
    };
    for (const auto& [id, state, breakIt] : faults) {
        auto facts = healthy();
        breakIt(facts);
        const auto checks = judge(facts);
        const auto found = std::ranges::find(checks, id, &Check::id);
        ASSERT_NE(found, checks.end()) << id;
        EXPECT_EQ(found->state, state) << found->sentence;
        EXPECT_EQ(std::ranges::count(checks, ill, &Check::state), state == ill ? 1 : 0) << id;
        EXPECT_TRUE(state != ill || !found->remedy.empty()) << found->sentence;
    }
}

TEST(Doctor, FitsTheTerminalAndTellsScripts) {
    auto facts = healthy();
    facts.codexTrust = DoctorFacts::CodexTrust::untrusted;
    const auto checks = judge(facts);
    const std::string narrow = doctorText(checks, {.width = 40});
    for (const auto line : Text::split(narrow, '\n')) {
        EXPECT_LE(Text::validUtf8(line).size(), 46U) << line;
    }
    EXPECT_TRUE(doctorText(checks, {}).ends_with("\nOne thing is not well.\n"));
    const auto json = doctorJson(checks);
    EXPECT_TRUE(json.starts_with(R"({"well":false,"checks":[{"id":"executable","state":"well",)")) << json;
    EXPECT_TRUE(json.contains(R"({"id":"trust.codex","state":"ill","sentence":"Codex was not told)")) << json;
}

TEST(CodexHooks, KnowsWhichEntriesWereTrusted) {
    const auto entries = CodexHooks::entries(R"({"hooks":{
        "PreToolUse":[{"hooks":[{"type":"command","command":"theirs"}]},
                      {"hooks":[{"type":"command","command":"'/k' --kippo-hook --agent codex","timeout":5}]}],
        "SessionEnd":[{"hooks":[{"type":"command","command":"'/k' --kippo-hook --agent codex","timeout":5}]}],
        "Stop":[{"matcher":"x","hooks":[{"type":"command","command":"'/k' --kippo-hook --agent codex","timeout":5}]}]}})");
    // The texts whose SHA-256 Codex 0.169 kept when it was told to trust these entries.
    EXPECT_EQ(entries,
              (std::vector<CodexHooks::Entry>{
                  {":pre_tool_use:1:0", R"({"event_name":"pre_tool_use","hooks":[{"async":false,"command":)"
                                        R"("'/k' --kippo-hook --agent codex","timeout":5,"type":"command"}]})"},
                  {":session_end:0:0", R"({"event_name":"session_end","hooks":[{"async":false,"command":)"
                                       R"("'/k' --kippo-hook --agent codex","timeout":3,"type":"command"}]})"},
                  {":stop:0:0", ""}}));
    const std::string config =
        "[features]\nhooks = true\n"
        "[hooks.state.\"/h/hooks.json:stop:0:0\"]\nenabled = false\ntrusted_hash = \"sha256:0a1\"\n"
        "[hooks.state.\"/h/hooks.json:stop:1:0\"]\n[other]\ntrusted_hash = \"sha256:0b2\"\n"
        "[inline]\nx = { '/h/hooks.json:stop:2:0' = { trusted_hash = 'sha256:0c3' } }\n";
    EXPECT_EQ(CodexHooks::record(config, "/h/hooks.json:stop:0:0").trustedHash, "0a1");
    EXPECT_TRUE(CodexHooks::record(config, "/h/hooks.json:stop:0:0").isDisabled);
    EXPECT_FALSE(CodexHooks::record(config, "/h/hooks.json:stop:1:0").trustedHash);
    EXPECT_EQ(CodexHooks::record(config, "/h/hooks.json:stop:2:0").trustedHash, "0c3");
    EXPECT_FALSE(CodexHooks::record(config, "/h/hooks.json:stop:3:0").trustedHash);
    EXPECT_FALSE(CodexHooks::areHooksOff(config));
    EXPECT_TRUE(CodexHooks::areHooksOff("[features]\r\n hooks=false # for now\r\n"));
    EXPECT_FALSE(CodexHooks::areHooksOff("[x]\nhooks = false\n"));
}

TEST(LeftoversText, ListsFoldersAndTheirSum) {
    EXPECT_EQ(leftoversText({}, "/home/dev", {}), "Nothing big found.\n");
    const std::vector<Leftover> leftovers{{.path = "/home/dev/web/node_modules", .sizeKB = 2'097'152, .project = "web"},
                                          {.path = "/srv/api/target", .sizeKB = 20480, .project = "api"}};
    EXPECT_TRUE(leftoversText(leftovers, "/home/dev", {})
                    .starts_with("  SIZE  PROJECT  FOLDER\n2.0 GB  web      ~/web/node_modules\n"
                                 " 20 MB  api      /srv/api/target\n\n2.0 GB in 2 folders."));
    EXPECT_EQ(leftoversJson({leftovers[1]}),
              R"({"leftovers":[{"path":"/srv/api/target","sizeKB":20480,"project":"api"}],"totalKB":20480})");
}

/// The built executable in a home with a Claude Code that has worked in a project.
class DoctorCommand : public testing::Test {
protected:
    DoctorCommand() {
        home.write(".claude/settings.json", "{\"model\": \"opus\"}\n");
        home.write("web/node_modules/a.bin", std::string(11 << 20, 'x'));
        home.write("web/dist/small", "x");
        const samples::Reply dear{
            .date = std::chrono::system_clock::now(), .cwd = home.path("web"), .input = 1'000'000};
        home.write(".claude/projects/-web/a1.jsonl", dear.line());
    }

    Shell home;
};

TEST_F(DoctorCommand, IsWellOnceAnAgentIsConnectedAndHasReported) {
    EXPECT_EQ(home.run("kippo hooks remove && kippo hooks install claude --dry-run >diff").status, 0);
    EXPECT_EQ(home.read(".claude/settings.json"), "{\"model\": \"opus\"}\n") << "a dry run changes nothing";
    EXPECT_EQ(home.run("kippo hooks install claude && cp .claude/settings.json installed && kippo hooks remove claude "
                       "&& patch -s -p0 --posix .claude/settings.json <diff && cmp .claude/settings.json installed")
                  .status,
              0)
        << "the diff is what an install does";
    home.run("echo \"{\\\"hook_event_name\\\":\\\"Stop\\\",\\\"session_id\\\":\\\"a1\\\"}\" | kippo --kippo-hook");
    const auto log = home.read(".local/share/Kippo/agent-events.jsonl");
    const auto well = home.run("kippo doctor");
    EXPECT_EQ(well.status, 0) << well.output;
    EXPECT_EQ(home.read(".local/share/Kippo/agent-events.jsonl"), log) << "the hook that is tried leaves no trace";
    EXPECT_TRUE(home.run("kippo hooks").output.contains("● yes")) << "connected";
    home.write(".config/Kippo/defaults.json", "{ no");
    const auto ill = home.run("kippo doctor --json");
    EXPECT_EQ(ill.status, 1);
    EXPECT_TRUE(ill.output.contains(R"({"id":"settings","state":"ill")")) << ill.output;
}

TEST_F(DoctorCommand, KnowsWhatCodexKeepsOfTrustedHooks) {
    home.run("kippo hooks install codex");
    const auto trust = [&] { return home.run("kippo doctor --json").output; };
    EXPECT_TRUE(trust().contains(R"({"id":"trust.codex","state":"ill","sentence":"Codex was not told)")) << trust();
    std::string config;
    for (const auto& [place, identity] : CodexHooks::entries(home.read(".codex/hooks.json"))) {
        home.write("identity", identity);
        const auto sum = home.run("sha256sum <identity").output.substr(0, 64);
        config +=
            "[hooks.state.\"" + home.path(".codex/hooks.json") + place + "\"]\ntrusted_hash = \"sha256:" + sum + "\"\n";
    }
    home.write(".codex/config.toml", config);
    EXPECT_TRUE(trust().contains(R"({"id":"trust.codex","state":"well")")) << trust();
    config.replace(config.rfind("sha256:") + 7, 4, "ffff");
    home.write(".codex/config.toml", config);
    EXPECT_TRUE(trust().contains(R"("sentence":"Kippo's hooks are not the ones)")) << trust();
}

TEST_F(DoctorCommand, LeftoversAndUsageComeFromTheTranscripts) {
    EXPECT_TRUE(home.run("kippo usage").output.contains("web                 1.0M  $5.00  ~/web\n"))
        << home.run("kippo usage").output;
    const auto listed = home.run("kippo leftovers");
    EXPECT_TRUE(listed.output.contains("11 MB  web      ~/web/node_modules\n")) << listed.output;
    EXPECT_EQ(home.run("kippo leftovers trash web/node_modules web/dist").status, 1);
    EXPECT_TRUE(home.exists("web/node_modules")) << "a folder that is not listed keeps all of them where they are";
    EXPECT_EQ(home.run("kippo leftovers trash").status, 2);
    const auto moved = home.run("kippo leftovers trash ./web/node_modules/");
    EXPECT_EQ(moved.status, 0) << moved.output;
    EXPECT_FALSE(home.exists("web/node_modules"));
    EXPECT_TRUE(home.exists(".local/share/Trash/files/node_modules/a.bin")) << moved.output;
}

} // namespace
} // namespace kippo::Terminal
