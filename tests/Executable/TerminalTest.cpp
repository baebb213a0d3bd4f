// What the terminal commands print, as far as it is formatting.

#include "App/Terminal/Arguments.h"
#include "App/Terminal/SessionList.h"
#include "App/Terminal/TerminalText.h"
#include "Fakes/SampleSession.h"
#include "Support/Text.h"

#include <gtest/gtest.h>

namespace kippo::Terminal {
namespace {

constexpr Date now = dateFromUnix(1795226400);

/// One of each status, and a process left behind.
SessionList exampleList() {
    SessionList list;
    const Date heard = now - Seconds{250};
    auto waiting = sampleSession("a1", AgentStatus::needsYou("Waiting for you to approve a command"), heard);
    waiting.cwd = "/home/dev/api";
    waiting.rootPID = 4100;
    waiting.memoryKB = 524288;
    waiting.cpu = 12.4;
    waiting.ports = {3000, 5173};
    auto working = sampleSession("b2", AgentStatus::working(), heard);
    working.cwd = "/home/dev/web";
    working.kind = AgentKind::codex;
    working.workingSince = now - Seconds{200};
    working.activity = AgentActivity{AgentActivity::Kind::shell, "Bash", "npm test", false, now};
    auto done = sampleSession("c3", AgentStatus::done(), heard);
    done.cwd = "/home/dev/infra";
    done.summary = "Moved the bucket to its own stack";
    list.sessions = {waiting, working, done};
    const std::string command = "node /home/dev/web/node_modules/.bin/vite";
    const ProcInfo vite{.pid = 5000, .ppid = 1, .rssKB = 131072, .uptime = 7300, .command = command};
    list.detached.push_back({vite, "/home/dev/web", {5174}});
    return list;
}

/// A command line, read, with the words that the result points to.
struct Parsed {
    explicit Parsed(std::vector<std::string> line) : words(std::move(line)) {
        words.insert(words.begin(), "kippo");
        std::vector<char*> pointers;
        for (auto& word : words) {
            pointers.push_back(word.data());
        }
        arguments = parseArguments(pointers, commands);
    }

    static constexpr Command commands[] = {{.name = "status", .options = "--json"},
                                           {.name = "hooks",
                                            .options = "--json --dry-run",
                                            .takesWords = true,
                                            .usage = "  kippo hooks\n",
                                            .help = "how"}};
    std::vector<std::string> words;
    Arguments arguments;
};

TEST(TerminalArguments, KnowsItsWords) {
    using enum Arguments::Kind;
    const struct {
        std::vector<std::string> words;
        Arguments::Kind kind;
        std::string_view command;
    } cases[] = {{{}, start, ""},
                 {{"status"}, command, "status"},
                 {{"status", "--json"}, command, "status"},
                 {{"status", "-h"}, help, ""},
                 {{"hooks", "install", "--help"}, help, "hooks"},
                 {{"--version"}, version, ""},
                 {{"--demo"}, application, ""},
                 {{"-platform", "offscreen"}, application, ""},
                 {{"-platform", "status", "--help"}, help, ""},
                 {{"status", "now"}, wrong, ""},
                 {{"status", "--dry-run"}, wrong, ""},
                 {{"hooks", "-x"}, wrong, ""},
                 {{"--json"}, wrong, ""},
                 {{""}, wrong, ""}};
    for (const auto& [words, kind, name] : cases) {
        const Parsed parsed{words};
        EXPECT_EQ(parsed.arguments.kind, kind) << testing::PrintToString(words);
        const auto* found = parsed.arguments.command;
        EXPECT_EQ(found != nullptr ? found->name : "", name) << testing::PrintToString(words);
        EXPECT_EQ(parsed.arguments.complaint.empty(), kind != wrong) << testing::PrintToString(words);
    }
    EXPECT_EQ((Parsed{{"hooks", "install", "--dry-run", "codex"}}.arguments.request),
              (Request{{"install", "codex"}, {"--dry-run"}}));
    EXPECT_EQ(Parsed{{"stauts"}}.arguments.complaint, "kippo: I do not know “stauts”. See “kippo --help”.");
    EXPECT_EQ(unknownWord("a\n\x1b[2Jb"), "kippo: I do not know “a \xEF\xBF\xBD[2Jb”. See “kippo --help”.");
}

TEST(TerminalText, StrangersTextCannotReachTheTerminal) {
    EXPECT_EQ(plainText("  two\t\r\n lines  "), "two lines");
    EXPECT_EQ(plainText("\x1b]0;title\x07"), "�]0;title�");
    EXPECT_EQ(plainText("c1 \u009B31m \x7f"), "c1 �31m �") << "U+009B is an escape sequence of its own";
    EXPECT_EQ(plainText("bad \xFF byte"), "bad � byte");
    EXPECT_EQ(plainText("abc\u202Efed"), "abc�fed") << "right-to-left override";
    EXPECT_EQ(plainText("naïve 日本 👩‍👩‍👧"), "naïve 日本 👩‍👩‍👧");
    EXPECT_EQ(plainText(""), "");
}

TEST(TerminalText, CountsColumnsAndCutsBetweenCharacters) {
    const struct {
        std::string_view text;
        int columns, room;
        std::string_view fits;
    } cases[] = {
        {"abc", 3, 3, "abc"},
        {"abcd", 4, 3, "ab…"},
        {"日本語", 6, 5, "日本…"},
        {"日本語", 6, 4, "日…"},
        {"e\xCC\x81te\xCC\x81", 3, 2, "e\xCC\x81…"}, // combining accents
        {"👩‍👩‍👧x", 3, 2, "…"},          // a family is two columns wide and never cut
        {"🇩🇪🇫🇷", 4, 3, "🇩🇪…"},                       // so is a flag
        {"❤\xEF\xB8\x8Fx", 3, 3, "❤\xEF\xB8\x8Fx"},  // emoji style widens
        {"abc", 3, 0, ""},
        {"", 0, 0, ""},
    };
    for (const auto& [text, columns, room, fits] : cases) {
        EXPECT_EQ(columnsOf(text), columns) << text;
        EXPECT_EQ(fitted(text, room), fits) << text;
    }
}

TEST(SessionTable, AlignsWhatAPersonWantsToKnow) {
    EXPECT_EQ(sessionTable(exampleList(), now, {}),
              "STATUS       WHAT                                  AGENT        PROJECT  TIME                 MEMORY  "
              "CPU  PORTS\n"
              "● Needs you  Waiting for you to approve a command  Claude Code  api      Waiting 4 min        512 MB  "
              "12%  :3000 "
              ":5173\n"
              "● Working    Running npm test                      Codex        web      Active 3 min so far\n"
              "● Done       Moved the bucket to its own stack     Claude Code  infra    Finished 4 min ago\n"
              "\n"
              "LEFT RUNNING  PROJECT  FOR   MEMORY   PID  PORTS\n"
              "vite          web      2 hr  128 MB  5000  :5174\n");
}

TEST(SessionTable, FitsEveryWidth) {
    EXPECT_EQ(sessionTable({}, now, {}),
              "No agent is at work here. Start one in any terminal, and it shows up in this list.\n");
    auto list = exampleList();
    list.sessions[1].prompt =
        "日本語の長い依頼 👩‍👩‍👧 \x1b[31mred\x1b[0m and much, much more than any terminal holds";
    list.sessions[1].activity.reset();
    list.sessions[2].cwd = "/home/dev/a-project-whose-name-goes-on-and-on-and-on";
    for (int width = 1; width <= 200; ++width) {
        const auto table = sessionTable({list.sessions, {}}, now, {.width = width});
        for (const auto line : Text::split(table, '\n')) {
            ASSERT_LE(columnsOf(line), width) << line;
        }
        EXPECT_EQ(table.find('\x1b'), std::string::npos);
    }
    // What is most worth knowing stays in a common terminal.
    const auto common = sessionTable(exampleList(), now, {.width = 80});
    for (const auto* word : {"Needs you", "Waiting for you to", "Claude Code", "api", "Waiting 4 min"}) {
        EXPECT_NE(common.find(word), std::string::npos) << common;
    }
}

TEST(SessionTable, ColoursOnlyWhereAskedAndChangesNothingElse) {
    const auto coloured = sessionTable(exampleList(), now, {.width = 100, .colour = true});
    std::string bare;
    for (std::size_t at = 0; at < coloured.size(); ++at) {
        if (coloured[at] == '\x1b') {
            at = coloured.find('m', at);
        } else {
            bare += coloured[at];
        }
    }
    EXPECT_NE(coloured, bare);
    EXPECT_EQ(bare, sessionTable(exampleList(), now, {.width = 100}));
}

TEST(SessionTable, AShortScreenSaysWhatItLeavesOut) {
    EXPECT_EQ(firstLines("a\nb\nc\n", 3), "a\nb\nc\n");
    EXPECT_EQ(firstLines("a\nb\nc\n", 2), "a\n… and 2 lines more\n");
    EXPECT_EQ(firstLines("a\nb\nc\n", 1), "… and 3 lines more\n");
}

TEST(SessionJson, HoldsEveryFieldUnderItsName) {
    auto list = exampleList();
    list.sessions[0].childPorts = {{4200, {3000}}};
    list.sessions[0].children = {ProcInfo{.pid = 4200, .ppid = 4100, .command = "node server.js \xFF\x01"}};
    list.sessions[0].prompt = "say \"hi\"\n";
    list.sessions.pop_back();
    // Scripts rely on each name, on dates as Unix seconds, and on the text being one line.
    EXPECT_EQ(sessionJson(list, now),
              R"({"sessions":[{"id":"a1","kind":"claude","title":"Claude Code","project":"api","cwd":"/home/dev/api",)"
              R"("status":"needsYou","needsYou":"Waiting for you to approve a command",)"
              R"("sentence":"Waiting for you to approve a command","workingSince":null,"rootPID":4100,)"
              R"("ports":[3000,5173],"summary":null,"prompt":"say \"hi\"\n","entrypoint":null,"customName":null,)"
              R"("activity":null,"timeline":"Waiting 4 min","lastEvent":1795226150,"memoryKB":524288,"cpu":12.4,)"
              R"("tokensToday":null,"costToday":null,"childPorts":{"4200":[3000]},"children":[{"pid":4200,"ppid":4100,)"
              R"("rssKB":0,"cpu":0,"uptime":0,"command":"node server.js �\u0001",)"
              R"("friendlyName":"server.js �\u0001"}]},{"id":"b2","kind":"codex","title":"Codex","project":"web",)"
              R"("cwd":"/home/dev/web","status":"working","needsYou":null,"sentence":"Running npm test",)"
              R"("workingSince":1795226200,"rootPID":null,"ports":[],"summary":null,"prompt":null,"entrypoint":null,)"
              R"("customName":null,"activity":{"kind":"shell","tool":"Bash","detail":"npm test","finished":false,)"
              R"("time":1795226400,"text":"Running npm test"},"timeline":"Active 3 min so far","lastEvent":1795226150,)"
              R"("memoryKB":0,"cpu":0,"tokensToday":null,"costToday":null,"childPorts":{},"children":[]}],)"
              R"("detached":[{"pid":5000,"ppid":1,"rssKB":131072,"cpu":0,"uptime":7300,)"
              R"("command":"node /home/dev/web/node_modules/.bin/vite","friendlyName":"vite","cwd":"/home/dev/web",)"
              R"("ports":[5174]}],"workingCount":1,"needsYouCount":1})");
}

TEST(SessionJson, WhatOnlyGrowsOlderIsNoNews) {
    const auto before = exampleList();
    const auto changed = [&](auto change) {
        auto after = before;
        change(after);
        return newsJson(after) != newsJson(before);
    };
    EXPECT_FALSE(changed([](SessionList& list) {
        list.sessions[0].cpu = 99;
        list.sessions[0].memoryKB += 1;
        list.sessions[0].lastEvent += Seconds{60};
        list.sessions[0].children.push_back({.pid = 4300, .command = "cc1"});
        list.sessions[1].activity->time += Seconds{1};
        list.detached[0].proc.uptime += 3;
    }));
    EXPECT_TRUE(changed([](SessionList& list) { list.sessions[0].status = AgentStatus::working(); }));
    EXPECT_TRUE(changed([](SessionList& list) { list.sessions[0].status.sentence = "Another question"; }));
    EXPECT_TRUE(changed([](SessionList& list) { list.sessions[1].activity->finished = true; }));
    EXPECT_TRUE(changed([](SessionList& list) { list.sessions[2].ports = {8080}; }));
    EXPECT_TRUE(changed([](SessionList& list) { std::swap(list.sessions[0], list.sessions[1]); }));
    EXPECT_TRUE(changed([](SessionList& list) { list.detached.clear(); }));
}

} // namespace
} // namespace kippo::Terminal
