#include "Agents/HookInstallation.h"

#include "Fakes/FakeUserFiles.h"
#include "Support/JsonTree.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kippo {

using HookBridge::InstallError;
using testing::HasSubstr;
using testing::Not;

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
        std::vector<std::string> originals{"{}",
                                           "{}\n",
                                           "{\n}",
                                           " {\r\n\r\n}\r\n",
                                           "{\"hooks\":{}}",
                                           "{\"a\":1}\n",
                                           "{\n  \"hooks\": {\"x\": 1}\n}",
                                           "{\n    \"a\": 1\n}\n",
                                           "{ \"a\": 1,\n\"b\": {}\n}",
                                           "{\"version\": 2,\n\"hooks\":\n{ \"Other\": \"text\" } }"};
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

} // namespace kippo
