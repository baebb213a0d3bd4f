#include "Agents/HookInstallation.h"

#include "Fakes/FakeUserFiles.h"
#include "Support/JsonTree.h"
#include "Support/Text.h"

#include <cstdlib>
#include <gmock/gmock.h>

namespace kippo {

using HookBridge::InstallError;
using testing::HasSubstr;

namespace {

bool isJson(std::string_view text) {
    return Json::tree(text, [](const Json::Node&, std::size_t) { return true; }).has_value();
}

const std::string executable = "/opt/kippo/bin/kippo";

struct HookInstallationTest : testing::Test {
    FakeUserFiles files;
    HookBridge::SettingsHome home{files, "/home/me"};

    std::string& file(HookAgent agent) { return files.files[home.settingsFile(agent)]; }
    /// The file after an install into `before`.
    std::string installed(HookAgent agent, const std::string& before) {
        files.files = {{home.settingsFile(agent), before}};
        EXPECT_TRUE(HookBridge::install(home, agent, executable)) << before;
        return file(agent);
    }
    std::string uninstalled(HookAgent agent) {
        EXPECT_TRUE(HookBridge::uninstall(home, agent));
        return file(agent);
    }
    /// A list for each event; `list` is its text.
    static std::string allLists(HookAgent agent, const std::string& list, const std::string& lineEnd = "\n") {
        std::string text = "{" + lineEnd + "\t\"n\": [1e3, 12345678901234567890, 1E+400, -0.0],\t\"hooks\":{";
        for (const auto event : HookBridge::hookedEvents(agent)) {
            text += (text.ends_with('{') ? "" : " ,") + lineEnd + "\t\t\"" + std::string{event} + "\" : " + list;
        }
        return text + lineEnd + "  } ,\"\\u0061\\/\": \"\\ud83d\\ude00é\"" + lineEnd + " }";
    }
    std::size_t countOf(std::string_view wanted, HookAgent agent) {
        std::size_t count = 0;
        for (auto at = file(agent).find(wanted); at != std::string::npos; at = file(agent).find(wanted, at + 1)) {
            ++count;
        }
        return count;
    }
};

} // namespace

TEST_F(HookInstallationTest, WritesAFileOfItsOwnAsEachAgentReadsIt) {
    EXPECT_TRUE(HookBridge::install(home, HookAgent::gemini, "/opt/it's/kippo"));
    const std::string& gemini = file(HookAgent::gemini);
    EXPECT_THAT(gemini, testing::StartsWith(R"({
  "hooks": {
    "SessionStart": [
      {
        "hooks": [
          {
            "name": "kippo",
            "type": "command",
            "command": "'/opt/it'\\''s/kippo' --kippo-hook --agent gemini",
            "timeout": 5000
          }
        ]
      }
    ],
    "BeforeAgent": [)"));
    EXPECT_THAT(gemini, HasSubstr("\"BeforeTool\": [\n      {\n        \"matcher\": \".*\",\n        \"hooks\": ["));
    EXPECT_THAT(gemini, testing::EndsWith("    ]\n  }\n}\n"));
    EXPECT_EQ(countOf("matcher", HookAgent::gemini), 2U);

    EXPECT_TRUE(HookBridge::install(home, HookAgent::cursor, executable));
    EXPECT_THAT(file(HookAgent::cursor), testing::StartsWith(R"({
  "version": 1,
  "hooks": {
    "sessionStart": [
      {
        "command": "'/opt/kippo/bin/kippo' --kippo-hook --agent cursor",
        "timeout": 5
      }
    ],)"));
    for (const auto& [agent, matchers] : {std::pair{HookAgent::claude, 4U}, {HookAgent::codex, 0U}}) {
        EXPECT_TRUE(HookBridge::install(home, agent, executable));
        EXPECT_EQ(countOf("\"matcher\": \"*\"", agent), matchers);
        EXPECT_EQ(countOf("\"timeout\": 5\n", agent), HookBridge::hookedEvents(agent).size());
        EXPECT_TRUE(HookBridge::isInstalled(home, agent));
    }
    EXPECT_THAT(files.written, testing::SizeIs(4)) << "no backup of what was not there";
}

TEST_F(HookInstallationTest, TheShellSplitsTheCommandIntoItsWords) {
    for (const std::string path : {"/a b/it's/$HOME/\"k\"/`x`\\", "''"}) {
        const auto command = HookBridge::hookCommand(HookAgent::codex, path);
        std::FILE* out = popen(("printf '<%s>' " + command).c_str(), "r");
        std::string words(200, '\0');
        words.resize(std::fread(words.data(), 1, words.size(), out));
        pclose(out);
        EXPECT_EQ(words, "<" + path + "><--kippo-hook><--agent><codex>");
    }
}

TEST_F(HookInstallationTest, GivesTheOriginalBackByteForByte) {
    const std::vector<std::string> lists{
        "[]",
        "[ ]",
        "[\n\n]",
        R"([{"hooks":[{"type":"command","command":"a"}]}])",
        "[\n   {\"command\": \"a\", \"timeout\": 5.0e0}\n  ,3,\n\n      null ]",
        "[\r\n\t\t\t{\"hooks\": []},\r\n\t\t\t{\"hooks\": [{}, [\"--kippo-hook\"]]}\r\n\t\t]",
    };
    for (const auto agent : allHookAgents) {
        std::vector<std::string> originals{"{}", "{}\n", "{\n}", " {\r\n\r\n}\r\n", "{\"hooks\":{}}", "{\"a\":1}\n"};
        originals.insert(originals.end(),
                         {"{\n  \"hooks\": {\"x\": 1}\n}", "{\n    \"a\": 1\n}\n", "{ \"a\": 1,\n\"b\": {}\n}",
                          "{\"version\": 2,\n\"hooks\":\n{ \"Other\": \"text\" } }"});
        for (const auto& list : lists) {
            for (const std::string lineEnd : {"\n", "\r\n", "\r", ""}) {
                originals.push_back(allLists(agent, list, lineEnd));
            }
        }
        for (const auto& original : originals) {
            const auto after = installed(agent, original);
            EXPECT_TRUE(HookBridge::isInstalled(home, agent)) << original;
            EXPECT_TRUE(isJson(after)) << after;
            EXPECT_EQ(countOf("--kippo-hook ", agent), HookBridge::hookedEvents(agent).size());
            EXPECT_EQ(uninstalled(agent), original);
            // Without the backup too, if the lists hold something and are not all on one line.
            if (original.contains("null ]") && agent != HookAgent::cursor) {
                installed(agent, original);
                files.files.erase(home.backupFile(agent));
                EXPECT_EQ(uninstalled(agent), original);
            }
        }
    }
}

TEST_F(HookInstallationTest, TouchesNoEntryThatIsRight) {
    for (const auto agent : allHookAgents) {
        const auto once = installed(agent, allLists(agent, "[7]"));
        files.written.clear();
        EXPECT_TRUE(HookBridge::install(home, agent, executable));
        HookBridge::repairIfNeeded(home, executable);
        EXPECT_EQ(files.written, std::vector<std::string>{}) << "Codex would withdraw its trust";
        const std::string moved = "/new/kippo";
        EXPECT_FALSE(HookBridge::plannedInstall(home, agent, executable)->isNeeded());
        HookBridge::repairIfNeeded(home, moved);
        EXPECT_EQ(countOf("/new/kippo", agent), HookBridge::hookedEvents(agent).size());
        EXPECT_EQ(file(agent).size(),
                  once.size() - (executable.size() - moved.size()) * HookBridge::hookedEvents(agent).size());
    }
    const auto ours = HookBridge::hookCommand(HookAgent::codex, executable);
    const std::string right = R"({ "hooks" : [ {"timeout": 5.0, "command": ")" + ours +
                              R"(", "type": "command", "statusMessage": "x"}, {"command": "mine"} ] })";
    installed(HookAgent::codex, "{\n\"hooks\":{\"Stop\":[1," + right + ",2]}}");
    EXPECT_THAT(file(HookAgent::codex), HasSubstr("{\"Stop\":[1," + right + ",2],\n"));
    uninstalled(HookAgent::codex);
}

TEST_F(HookInstallationTest, ReplacesWrongOldAndDoubledEntriesInTheirPlace) {
    const std::string wrong = R"({"hooks":[{"type":"command","command":"'/old/kippo' --kippo-hook","timeout":5}]})";
    const std::string legacy = R"({"matcher":"*","hooks":[{"command":"'/Varde' --varde-hook"}]})";
    const std::string mixed = R"({"hooks":[{"command":"a"}, {"command":"/k --kippo-hook"},{"command":"b --kippo"}]})";
    installed(HookAgent::claude, "{\n\"hooks\":{\"Stop\":[\"x\"," + wrong + ", " + legacy + ",{\"command\":\"y\"}," +
                                     wrong + "]\n,\"PreToolUse\":[" + mixed + "],\"SubagentStop\":[1," + wrong + "]}}");
    const auto& text = file(HookAgent::claude);
    EXPECT_THAT(text, HasSubstr("\"Stop\":[\"x\",{\"hooks\": [{\"type\": \"command\", \"command\": "
                                "\"'/opt/kippo/bin/kippo' --kippo-hook --agent claude\", \"timeout\": 5}]},{\"command\""
                                ":\"y\"}]\n,"));
    EXPECT_THAT(text,
                HasSubstr(R"("PreToolUse":[{"hooks":[{"command":"a"},{"command":"b --kippo"}]}, {"matcher": "*")"));
    EXPECT_THAT(text, HasSubstr("\"SubagentStop\":[1],"));
    EXPECT_TRUE(HookBridge::isInstalled(home, HookAgent::claude));

    // An entry counts by its command alone.
    const std::string texts = R"({"hooks":[{"prompt":"--kippo-hook","command":["--kippo-hook"]}],"x":"--kippo-hook"})";
    files.files = {{home.settingsFile(HookAgent::claude), "{\n\"hooks\": {\"Stop\": [" + texts + "]}}"}};
    EXPECT_FALSE(HookBridge::plannedUninstall(home, HookAgent::claude)->isNeeded());
    EXPECT_TRUE(HookBridge::ourCommands(home, HookAgent::claude)->empty());
    installed(HookAgent::claude, R"({"hooks": {"Stop": [)" + legacy + "]}}");
    EXPECT_EQ(uninstalled(HookAgent::claude), "{\n  \"hooks\": {\n    \"Stop\": []\n  }\n}")
        << "an original with entries of Kippo does not come back";
}

TEST_F(HookInstallationTest, UninstallTakesItsOwnListsAndLeavesTheUsers) {
    for (const auto agent : allHookAgents) {
        const std::string added = agent == HookAgent::cursor ? ",\n  \"version\": 1,\n  \"hooks\": {}" : "";
        files.files.clear();
        EXPECT_TRUE(HookBridge::install(home, agent, executable));
        EXPECT_EQ(uninstalled(agent), added.empty() ? "{}\n" : "{" + added.substr(1) + "\n}\n");
        // What the user changed in the meantime stays, and what was empty before stays too.
        const auto event = std::string{HookBridge::hookedEvents(agent).front()};
        for (const std::string before :
             {"{\n  \"a\": 1\n}", "{\n  \"a\": 1,\n  \"hooks\": {\n    \"EVENT\": []\n  }\n}"}) {
            auto original = before;
            if (const auto at = original.find("EVENT"); at != std::string::npos) {
                original.replace(at, 5, event);
            }
            installed(agent, original);
            const auto one = file(agent).find(" 1");
            file(agent).replace(one, 2, " 22");
            original.replace(original.find(" 1"), 2, " 22");
            if (!added.empty()) {
                original.insert(original.rfind('\n'),
                                before.contains("hooks") ? added.substr(0, added.rfind(',')) : added);
            }
            EXPECT_EQ(uninstalled(agent), original);
        }
    }
}

TEST_F(HookInstallationTest, LeavesAloneWhatItCannotEdit) {
    // One file between each two bars, then those that hold what a line cannot.
    constexpr std::string_view onALine =
        R"([]|null|"{}"|{"a": 1,}|{"a": [1,]}|{"a": 1 /* x */}|{} {}|{"a": 01}|{"a": .5}|{'a': 1}|{"a": NaN}|{"a": 1)"
        R"(|{"hooks": []}|{"hooks": null}|{"hooks": {"Stop": {}}}|{"hooks": {"Stop": null}}|{"hooks": {}, "hooks": {}})"
        R"(|{"a": 1, "\u0061": 1}|{"hooks": {"x": 1, "x": 2}})"
        R"(|{"hooks": {"Stop": [{"hooks": [{"command": "a", "command": "--kippo-hook"}]}]}})";
    auto damages = Text::split(onALine, '|');
    damages.insert(damages.end(), {"", " \n", "// x\n{}", "\xEF\xBB\xBF{}", "{\"a\": \"\xFF\"}", "{\"a\": \"\t\"}",
                                   std::string_view{"\xFF\xFE{\0}\0", 6}});
    for (const std::string_view damage : damages) {
        files.files = {{home.settingsFile(HookAgent::claude), std::string{damage}}};
        const auto outcome = HookBridge::install(home, HookAgent::claude, executable);
        ASSERT_FALSE(outcome) << damage;
        EXPECT_EQ(outcome.error().description(),
                  ".claude/settings.json isn't valid JSON, so Kippo left it alone. Fix it and try again.");
        EXPECT_FALSE(HookBridge::uninstall(home, HookAgent::claude));
        EXPECT_FALSE(HookBridge::ourCommands(home, HookAgent::claude));
        HookBridge::repairIfNeeded(home, executable);
        EXPECT_EQ(files.written, std::vector<std::string>{}) << damage;
    }
    // Twins far from the hooks, and hooks that are no lists and no events of ours, are the user's business.
    const std::string odd = "{\n\"env\": {\"a\": 1, \"a\": 2}, \"hooks\": {\"enabled\": true}}";
    installed(HookAgent::gemini, odd);
    EXPECT_EQ(uninstalled(HookAgent::gemini), odd);
    files.files.clear();
    EXPECT_TRUE(HookBridge::uninstall(home, HookAgent::codex));
    EXPECT_TRUE(files.files.empty());
}

TEST_F(HookInstallationTest, BacksUpOnceAndTellsWhatFails) {
    const auto path = home.settingsFile(HookAgent::codex);
    installed(HookAgent::codex, "{\"first\": 1}");
    EXPECT_EQ(files.files[path + ".kippo-backup"], "{\"first\": 1}");
    files.files[path] = "{\"second\": 2}";
    EXPECT_TRUE(HookBridge::install(home, HookAgent::codex, executable));
    EXPECT_EQ(files.files[path + ".kippo-backup"], "{\"first\": 1}");

    for (const auto& failing : {path + ".kippo-backup", path}) {
        files.files = {{path, "{}"}};
        files.full = {failing};
        const auto outcome = HookBridge::install(home, HookAgent::codex, executable);
        EXPECT_EQ(outcome.error(),
                  (InstallError{InstallError::Case::cannotWrite, ".codex/hooks.json", "No space left on device"}));
        EXPECT_EQ(files.files[path], "{}");
    }
    files.unreadable = {path};
    EXPECT_EQ(HookBridge::install(home, HookAgent::codex, executable).error().description(),
              ".codex/hooks.json can't be read, so Kippo left it alone: Permission denied.");
}

TEST_F(HookInstallationTest, ThePromptSaysWhatAnAssistantHasToDo) {
    for (const auto agent : allHookAgents) {
        const auto prompt = HookBridge::setupPrompt(home, agent, executable);
        EXPECT_THAT(prompt, HasSubstr(home.settingsFile(agent)));
        EXPECT_THAT(
            prompt,
            HasSubstr("Merge the entries below into its top-level \"hooks\" object. Append Kippo's entry to each "
                      "event's list; keep every existing hook and setting exactly as it is. If an entry whose "
                      "command contains \"--kippo-hook\" is already there, replace it instead of adding a second "
                      "one."));
        EXPECT_THAT(prompt, HasSubstr("3. Make sure the file is still valid JSON, then show me the diff."));
        // Its block, taken as the file, is an install.
        const auto from = prompt.find("```json\n") + 8;
        files.files = {{home.settingsFile(agent), prompt.substr(from, prompt.find("\n```", from) - from)}};
        EXPECT_FALSE(HookBridge::plannedInstall(home, agent, executable)->isNeeded());
        EXPECT_FALSE(HookBridge::afterConnecting(agent).empty());
    }
}

} // namespace kippo
