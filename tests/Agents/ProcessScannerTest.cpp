#include "Agents/ProcessScanner.h"
#include "Agents/TranscriptSamples.h"
#include "Fakes/Each.h"
#include "Fakes/FakeProcessLister.h"

#include <gmock/gmock.h>

namespace kippo {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

ProcInfo proc(Pid pid, Pid ppid, std::string command, double uptime = 100) {
    return {.pid = pid, .ppid = ppid, .uptime = uptime, .command = std::move(command)};
}

/// The samples of a capture: each begins with a line of '#'.
std::vector<std::vector<ProcInfo>> capture(const std::string& name) {
    std::vector<std::string> texts;
    for (const std::string& line : samples::linesOf(KIPPO_FIXTURES "/processes/" + name)) {
        if (line.starts_with("##")) {
            texts.emplace_back();
        } else if (!texts.empty()) {
            texts.back() += line + "\n";
        }
    }
    return each(texts, ProcessScanner::parsePs);
}

} // namespace

struct ProcessScannerTest : testing::Test {
    FakeProcessLister lister;

    ProcessScanner::Snapshot scan(std::vector<ProcInfo> table, const std::vector<std::string>& watch = {}) {
        lister.table = std::move(table);
        return ProcessScanner::snapshot(lister, watch);
    }
};

TEST_F(ProcessScannerTest, FindsOneRootInEachCaptureOfARealAgent) {
    struct Row {
        const char* file;
        AgentKind kind;
        Pid root;
        std::size_t lastTree; ///< processes below the root at the end of the agent's run
    };
    for (const Row& row : {Row{"claude-print-basic.txt", AgentKind::claude, 16611, 0},
                           {"claude-tui-permission.txt", AgentKind::claude, 25406, 0},
                           {"codex-exec-basic.txt", AgentKind::codex, 18854, 1},
                           {"gemini-print-basic.txt", AgentKind::gemini, 21279, 1},
                           {"opencode-run-basic.txt", AgentKind::opencode, 24080, 0}}) {
        const auto samples = capture(row.file);
        ASSERT_FALSE(samples.empty()) << row.file;
        ProcessScanner::Snapshot last;
        for (const auto& table : samples) {
            last = scan(table);
            EXPECT_THAT(last.agentRoots, ElementsAre(Pair(row.root, row.kind))) << row.file;
            EXPECT_THAT(last.detached, IsEmpty()) << row.file;
        }
        EXPECT_EQ(ProcessScanner::descendants(row.root, last).size(), row.lastTree) << row.file;
    }
}

TEST_F(ProcessScannerTest, CodexDaemonsAreNeitherSessionsNorLeftBehind) {
    const auto samples = capture("codex-tui-permission.txt");
    ASSERT_EQ(samples.size(), 3U);
    EXPECT_THAT(scan(samples[0]).agentRoots, ElementsAre(Pair(26321, AgentKind::codex)));
    EXPECT_THAT(scan(samples[1]).agentRoots, ElementsAre(Pair(26321, AgentKind::codex)));
    auto outlived = samples[2];
    ASSERT_EQ(outlived.size(), 2U);
    for (auto& helper : outlived) {
        helper.uptime = 3600;
        helper.command += " -c mcp_servers={}";
    }
    const auto end = scan(outlived);
    EXPECT_THAT(end.agentRoots, IsEmpty());
    EXPECT_THAT(end.detached, IsEmpty());
}

TEST_F(ProcessScannerTest, TheTopMostSessionIsTheRoot) {
    const auto found =
        scan({proc(10, 1, "tmux new -s x claude"), proc(11, 10, "bash -c claude"), proc(12, 11, "claude"),
              proc(13, 12, "bash -c codex exec hello"), proc(14, 13, "codex exec hello"),
              proc(20, 2, "codex app-server"), proc(21, 20, "claude"), proc(30, 2, "timeout 55 gemini"),
              proc(31, 30, "node /x/bin/gemini"), proc(32, 31, "/usr/bin/node --max-old-space-size=9 /x/bin/gemini"),
              proc(40, 2, "goose claude"), proc(41, 2, "goose")},
             {"goose"});
    EXPECT_THAT(found.agentRoots,
                ElementsAre(Pair(12, AgentKind::claude), Pair(21, AgentKind::claude), Pair(31, AgentKind::gemini),
                            Pair(40, AgentKind::custom), Pair(41, AgentKind::custom)));
    EXPECT_THAT(found.children.at(2), ElementsAre(20, 30, 40, 41));
}

TEST_F(ProcessScannerTest, CyclesAndDeepTreesEnd) {
    std::vector<ProcInfo> table{proc(5, 6, "claude"), proc(6, 5, "sh"), proc(7, 7, "codex")};
    // 40 shells deep: the claude above is out of reach of the walk.
    table.push_back(proc(100, 1, "claude"));
    for (Pid pid = 101; pid <= 140; ++pid) {
        table.push_back(proc(pid, pid - 1, "sh"));
    }
    table.push_back(proc(141, 140, "gemini"));
    table.push_back(proc(142, 120, "gemini"));
    const auto found = scan(table);
    EXPECT_THAT(found.agentRoots, ElementsAre(Pair(5, AgentKind::claude), Pair(7, AgentKind::codex),
                                              Pair(100, AgentKind::claude), Pair(141, AgentKind::gemini)));
    EXPECT_THAT(each(ProcessScanner::descendants(5, found), &ProcInfo::pid), ElementsAre(6));
    EXPECT_EQ(ProcessScanner::descendants(100, found).size(), 42U);
}

TEST_F(ProcessScannerTest, WhatWasLeftBehind) {
    const auto isLeft = [this](const ProcInfo& left) { return scan({left}).detached.size() == 1; };
    auto adopted = proc(50, 900, "node /home/dev/app/server.js");
    adopted.adopted = true;
    EXPECT_TRUE(isLeft(adopted));
    auto service = proc(51, 1, "node /srv/app/server.js");
    service.isService = true;
    EXPECT_FALSE(isLeft(service));
    EXPECT_TRUE(isLeft(proc(40, 1, "vite", 61)));
    EXPECT_FALSE(isLeft(proc(40, 1, "vite", 60)));
    EXPECT_FALSE(isLeft(proc(40, 39, "vite", 61)));
    for (const char* command :
         {"firefox", "/Applications/Foo/node x", "/usr/libexec/node x", "/usr/lib/chromium/chromium --headless",
          "/snap/bin/node x", "/usr/bin/python3 /usr/bin/networkd-dispatcher",
          "python3 -u /usr/share/system-config-printer/applet.py", "/bin/sh /usr/lib/tool/mcp.sh",
          "tmux new -s x npx playwright test", "node /home/dev/bin/codex mcp-server", "node /home/dev/bin/codex",
          "/usr/share/code/code --unity-launch /home/dev/mcp-server", "gvim mcp.md", "firefox https://playwright.dev",
          "python3 /home/dev/.local/bin/supervisord -n", "/var/lib/snapd/snap/x/node y",
          "/home/dev/.vscode-server/bin/1/node /home/dev/.vscode-server/bin/1/out/server-main.js --port=0"}) {
        EXPECT_FALSE(isLeft(proc(40, 1, command))) << command;
    }
    for (const char* command : {"/usr/bin/python3 -m http.server 8000", "node /usr/bin/npx vite",
                                "node /usr/share/nodejs/npm/bin/npm-cli.js run dev", "/usr/local/bin/node server.js",
                                "/opt/google/chrome/chrome --headless --remote-debugging-port=1", "uvx mcp-server-git",
                                "java -jar mcp-server.jar", "/home/dev/bin/github-mcp --stdio",
                                "/opt/google/chrome/chrome --user-data-dir=/tmp/playwright_profile about:blank",
                                "/home/dev/chrome/Google Chrome for Testing"}) {
        EXPECT_TRUE(isLeft(proc(40, 1, command))) << command;
    }
    // In a container an agent may be process 1; its servers are at work.
    EXPECT_THAT(scan({proc(1, 0, "claude"), proc(40, 1, "node mcp.js")}).detached, IsEmpty());
    const auto left = scan({proc(1, 0, "/sbin/init"), proc(40, 1, "npm run dev"), proc(41, 40, "node vite")}).detached;
    EXPECT_THAT(each(left, &ProcInfo::pid), ElementsAre(40));
}

TEST_F(ProcessScannerTest, AsksOnlyForThePidsThatMatter) {
    lister.ports = {{12, {3000}}, {13, {4000}}, {40, {5000}}, {41, {5173}}, {60, {22}}};
    lister.cwds = {{12, "/w/a"}, {13, "/w/b"}, {40, "/w/c"}, {41, "/w/d"}, {60, "/"}};
    const auto found = scan({proc(12, 2, "claude"), proc(13, 12, "node mcp"), proc(40, 1, "npm run dev"),
                             proc(41, 40, "node vite"), proc(60, 1, "sshd")});
    EXPECT_THAT(found.ports, ElementsAre(Pair(12, ElementsAre(3000)), Pair(13, ElementsAre(4000)),
                                         Pair(40, ElementsAre(5000)), Pair(41, ElementsAre(5173))));
    EXPECT_THAT(found.cwds, ElementsAre(Pair(12, "/w/a"), Pair(40, "/w/c")));
}

TEST_F(ProcessScannerTest, KnowsTheDesktopApp) {
    const std::string app = "/Applications/Claude.app/Contents/MacOS/Claude";
    const auto found = scan({proc(10, 1, app + " --flag"), proc(11, 10, "sh"), proc(12, 11, "claude"),
                             proc(13, 2, "/Applications/Claude.app/Contents/Helpers/claude x"), proc(14, 2, "claude")});
    EXPECT_TRUE(found.claudeAppRunning);
    EXPECT_THAT(found.desktopRoots, ElementsAre(12, 13));
    EXPECT_EQ(found.agentRoots.size(), 3U);
    EXPECT_TRUE(scan({proc(10, 1, app)}).claudeAppRunning);
    EXPECT_FALSE(scan({proc(10, 1, app + "Helper")}).claudeAppRunning);
}

TEST_F(ProcessScannerTest, StopsATreeFromItsLeaves) {
    const auto found = scan({proc(10, 1, "npm run dev"), proc(11, 10, "node a"), proc(12, 10, "node b"),
                             proc(13, 11, "esbuild"), proc(14, 99, "other")});
    EXPECT_THAT(each(ProcessScanner::descendants(10, found), &ProcInfo::pid), ElementsAre(12, 11, 13));
    EXPECT_TRUE(ProcessScanner::terminate(lister, 10, &found));
    EXPECT_THAT(lister.terminated, ElementsAre(13, 11, 12, 10));
    lister.terminated.clear();
    // By the time of the click another process has the pid.
    lister.table[0].startTicks = 7;
    const auto former = ProcessScanner::snapshot(lister, {});
    lister.table[0].startTicks = 8;
    EXPECT_FALSE(ProcessScanner::terminate(lister, 10, &former));
    lister.terminated.clear();
    EXPECT_FALSE(ProcessScanner::terminate(lister, 77, nullptr));
    EXPECT_THAT(lister.terminated, ElementsAre(77));
}

} // namespace kippo
