#include "Agents/TranscriptWatcher.h"

#include "Agents/TranscriptSamples.h"
#include "Fakes/Each.h"
#include "Fakes/PrivateHome.h"
#include "Fakes/TimeZone.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <gtest/gtest.h>

namespace kippo {

namespace {

using samples::phaseName;
using State = TranscriptWatcher::State;
using namespace std::chrono_literals;

const std::string project = ".claude/projects/-home-dev-app/";
const std::string session = project + "s1.jsonl";
/// 2026-11-21 02:10:00 UTC, when the lines below were written.
constexpr Date written = dateFromUnix(1795227000);

std::string prompt(const std::string& text = "go") {
    return R"({"type":"user","cwd":"/home/dev/app","timestamp":"2026-11-21T02:10:00Z","message":{"content":")" + text +
           "\"}}\n";
}
std::string reply(const std::string& text = "Did it.") {
    return R"({"type":"assistant","timestamp":"2026-11-21T02:10:00Z","message":{"stop_reason":"end_turn","content":)"
           R"([{"type":"text","text":")" +
           text + "\"}]}}\n";
}

struct TranscriptWatcherTest : testing::Test {
    PrivateHome home;
    TranscriptWatcher watcher{home.path()};

    void write(const std::string& file, const std::string& text, Date modified = written) {
        home.write(file, text);
        home.age(file, modified);
    }
    void append(const std::string& text, Date modified) {
        home.append(session, text);
        home.age(session, modified);
    }
    /// The phases of all sessions, sorted.
    std::vector<std::string> phases(Date now) {
        auto all = each(watcher.poll(now), phaseName);
        std::ranges::sort(all);
        return all;
    }
    using Phases = std::vector<std::string>;
};

} // namespace

TEST(TranscriptText, OneLine) {
    const auto oneLine = [](std::string_view text) { return TranscriptWatcher::oneLine(text); };
    EXPECT_EQ(oneLine("  a \n\t b\u00A0\u2003c \x1b[1m"), "a b c [1m");
    EXPECT_EQ(oneLine(" \n "), std::nullopt);
    EXPECT_EQ(oneLine(std::string(200, 'x')), std::string(200, 'x'));
    EXPECT_EQ(oneLine(std::string(201, 'x')), std::string(199, 'x') + "…");
}

TEST(TranscriptText, Summary) {
    const auto summary = [](std::string_view text) { return TranscriptWatcher::summary(text).value_or("none"); };
    EXPECT_EQ(TranscriptWatcher::summary(std::nullopt), std::nullopt);
    for (const auto& [text, expected] : std::vector<std::pair<std::string, std::string>>{
             {"", "none"},
             {"DONE: one\n done:  two \nthen", "two"},
             {"**Done:** all `of` it", "all `of` it"},
             {"# Title\n```\n\nI *really* fixed **the** `code` in snake_case.\nMore",
              "I really fixed the code in snake_case."},
             {"2 * 3 is _six_", "2 * 3 is six"},
             {"# Only a title", "none"},
             {"***\nplain", "plain"},
             {"Done:\nnothing more", "Done:"},
             {"tab\there", "tab here"},
             {std::string(120, 'x'), std::string(120, 'x')},
             {std::string(121, 'x'), std::string(117, 'x') + "…"}}) {
        EXPECT_EQ(summary(text), expected) << text;
    }
}

TEST(TranscriptText, NeedsYouMarker) {
    const auto marker = [](std::string_view text) { return TranscriptWatcher::needsYouMarker(text); };
    EXPECT_EQ(marker("Needs you: old\nNEEDS YOU:  which port? \nbye"), "which port?");
    EXPECT_EQ(marker("**Needs you:** a key"), "a key");
    EXPECT_EQ(marker("Needs you: x\nNeeds you: "), std::nullopt);
    EXPECT_EQ(marker("This needs you: no"), std::nullopt);
    EXPECT_EQ(marker(""), std::nullopt);
    EXPECT_EQ(TranscriptWatcher::needsYouMarker(std::nullopt), std::nullopt);
}

TEST(TranscriptText, Dates) {
    const auto unixDate = [](std::string_view text) -> std::optional<double> {
        const auto date = TranscriptWatcher::date(text);
        return date ? std::optional{unixSeconds(*date)} : std::nullopt;
    };
    EXPECT_EQ(unixDate("2026-11-21T02:10:00Z"), 1795227000);
    EXPECT_DOUBLE_EQ(unixDate("2026-11-21T02:10:00.123456Z").value_or(0), 1795227000.123456);
    EXPECT_EQ(unixDate("2026-11-21T03:40:00+01:30"), 1795227000);
    EXPECT_EQ(unixDate("2026-11-20T21:10:00.000-0500"), 1795227000);
    EXPECT_EQ(unixDate("2024-02-29T00:00:00Z"), 1709164800);
    for (const auto* bad :
         {"", "2026", "2026-11-21", "2026-11-21T02:10:00", "2026-11-21 02:10:00Z", "2026-13-21T02:10:00Z",
          "2025-02-29T00:00:00Z", "2026-11-21T24:10:00Z", "2026-11-21T02:10:00.Z", "2026-11-21T02:10:00Zx",
          "2026-11-21T02:10:00+1", "2026-1-21T02:10:00Z"}) {
        EXPECT_EQ(unixDate(bad), std::nullopt) << bad;
    }
}

TEST_F(TranscriptWatcherTest, AFinishedTurnSettlesAfterFourQuietSeconds) {
    write(session, prompt() + reply());
    EXPECT_EQ(phases(written + 4s), Phases{"working+"});
    EXPECT_EQ(phases(written + 4.1s), Phases{"done"});

    // What the client notes down later is no new turn; a request is.
    append(R"({"type":"file-history-snapshot"})"
           "\n",
           written + 20s);
    EXPECT_EQ(phases(written + 21s), Phases{"done"});
    append(prompt("more"), written + 30s);
    EXPECT_EQ(phases(written + 31s), Phases{"working"});
    append(reply("Which?\\nNeeds you: a name"), written + 40s);
    EXPECT_EQ(phases(written + 41s), Phases{"working+"});
    EXPECT_EQ(phases(written + 45s), Phases{"a name"});
}

TEST_F(TranscriptWatcherTest, FindsWhatWasWrittenLately) {
    write(session, prompt());
    write(project + "old.jsonl", prompt(), written - 1800s);
    write(project + "young.jsonl", prompt(), written - 1799s);
    write(project + "notes.txt", prompt());
    write(project + "s1/subagents/agent-1.jsonl", prompt());
    write(".claude/projects/stray.jsonl", prompt());
    ASSERT_EQ(::mkfifo(home.path(project + "pipe.jsonl").c_str(), 0600), 0);
    std::filesystem::create_directory(home.path(project + "folder.jsonl"));
    home.write("elsewhere/linked.jsonl", prompt());
    std::filesystem::create_directory_symlink(home.path("elsewhere"), home.path(".claude/projects/link"));
    home.age("elsewhere/linked.jsonl", written);
    EXPECT_EQ(phases(written).size(), 3U);
    EXPECT_EQ(watcher.watchedPaths(), (std::vector<std::string>{home.path(session), home.path(project + "young.jsonl"),
                                                                home.path(".claude/projects/link/linked.jsonl")}));
}

TEST_F(TranscriptWatcherTest, WalksTheFoldersEveryTenSeconds) {
    write(session, prompt());
    EXPECT_EQ(phases(written).size(), 1U);
    write(project + "s2.jsonl", prompt());
    EXPECT_EQ(phases(written + 10s).size(), 1U);
    EXPECT_EQ(phases(written + 10.1s).size(), 2U);
    write(project + "s3.jsonl", prompt());
    watcher.discoverSoon();
    EXPECT_EQ(phases(written + 11s).size(), 3U);
    EXPECT_EQ(phases(written - 3600s).size(), 3U) << "the clock was set back";

    // Gone at the next poll; too old at the next walk.
    std::filesystem::remove(home.path(session));
    EXPECT_EQ(phases(written - 3599s).size(), 2U);
    EXPECT_EQ(phases(written + 1799s).size(), 2U);
    EXPECT_EQ(phases(written + 1801s).size(), 2U);
    EXPECT_EQ(phases(written + 1810s).size(), 0U);
}

TEST_F(TranscriptWatcherTest, ReadsAgainOnlyWhatChanged) {
    write(session, prompt("one"));
    EXPECT_EQ(watcher.poll(written).at(0).prompt, "one");
    write(session, prompt("two"));
    EXPECT_EQ(watcher.poll(written).at(0).prompt, "one") << "a transcript only grows";
    write("new.jsonl", prompt("six"));
    std::filesystem::rename(home.path("new.jsonl"), home.path(session));
    EXPECT_EQ(watcher.poll(written).at(0).prompt, "six") << "another file of the same size";
    write(session, prompt("x"));
    EXPECT_EQ(watcher.poll(written).at(0).prompt, "x");
    home.append(session, prompt("half").substr(0, 60));
    EXPECT_EQ(watcher.poll(written).at(0).prompt, "x");
    home.append(session, prompt("half").substr(60));
    EXPECT_EQ(watcher.poll(written).at(0).prompt, "half");
    write(session, "");
    EXPECT_TRUE(watcher.poll(written).empty());
}

TEST_F(TranscriptWatcherTest, ReadsTheTailOnly) {
    const std::string filler = R"({"type":"attachment","x":")" + std::string(1000, 'x') + "\"}\n";
    std::string text = prompt("beyond reach");
    while (text.size() < 170000) {
        text += filler;
    }
    write(session, text + prompt("near"));
    EXPECT_EQ(watcher.poll(written).at(0).prompt, "near");
    write(session, text);
    EXPECT_EQ(watcher.poll(written).at(0).prompt, std::nullopt);
    // The piece with which the tail begins is dropped, even where it looks whole.
    const std::string whole = prompt("cut");
    write(session, "x" + whole + std::string(160000 - whole.size(), '\n'));
    EXPECT_TRUE(watcher.poll(written).empty());
    write(session, std::string(200000, '{'));
    EXPECT_TRUE(watcher.poll(written).empty());
    // Nothing is known of a session that was not asked anything.
    write(session, R"({"type":"mode","sessionId":"s1"})"
                   "\n" +
                       prompt("<command-name>/clear</command-name>"));
    EXPECT_TRUE(watcher.poll(written).empty());
}

TEST_F(TranscriptWatcherTest, CodexFoldersAreLocalDays) {
    const std::string line = R"({"type":"event_msg","payload":{"type":"task_started"}})"
                             "\n";
    const auto write = [&](const std::string& day, const std::string& name, Date modified) {
        home.write(".codex/sessions/" + day + "/" + name, line);
        home.age(".codex/sessions/" + day + "/" + name, modified);
    };
    const TimeZone zone{"Europe/Berlin"};
    // 2026-10-25 has 25 hours there; this is its 23:50, and then the next day's 00:10.
    const Date late = dateFromUnix(1792968600);
    for (const auto* day : {"2026/10/24", "2026/10/25", "2026/10/26", "2026/10/23"}) {
        write(day, "rollout-1.jsonl", late);
    }
    write("2026/10/25", "other.jsonl", late);
    EXPECT_EQ(phases(late).size(), 2U);
    EXPECT_EQ(watcher.watchedPaths().front(), home.path(".codex/sessions/2026/10/24/rollout-1.jsonl"));
    watcher.discoverSoon();
    EXPECT_EQ(phases(late + 1200s).size(), 2U) << "yesterday's are followed past midnight";
    EXPECT_EQ(watcher.watchedPaths().front(), home.path(".codex/sessions/2026/10/25/rollout-1.jsonl"));
}

TEST_F(TranscriptWatcherTest, ALongCodexSessionKeepsItsName) {
    std::array<char, 32> day{};
    const auto seconds = static_cast<std::time_t>(unixSeconds(written));
    std::tm local{};
    std::strftime(day.data(), day.size(), "%Y/%m/%d", ::localtime_r(&seconds, &local));
    const std::string file = std::string{".codex/sessions/"} + day.data() + "/rollout-1.jsonl";
    std::string text = R"({"type":"session_meta","payload":{"id":"own","cwd":"/a","source":"exec","x":")" +
                       std::string(30000, 'x') + "\"}}\n";
    while (text.size() < 200000) {
        text += R"({"type":"event_msg","payload":{"type":"agent_message","message":"m"}})"
                "\n";
    }
    write(file, text);
    const auto state = watcher.poll(written).at(0);
    EXPECT_EQ(state.session, "own");
    EXPECT_EQ(state.cwd, "/a");
    EXPECT_EQ(state.interactive, false);
}

// Chats of Gemini CLI lie beside a file that names their folder, and may end with the whole history in one line.
TEST_F(TranscriptWatcherTest, AGeminiChatBeyondTheTail) {
    const std::string folder = ".gemini/tmp/app/", file = folder + "chats/session-2026-11-21T02-09-own.jsonl";
    const auto message = [](const std::string& text) {
        return R"({"id":"m","timestamp":"2026-11-21T02:10:00Z","type":"user","content":[{"text":")" + text + R"("}]})" +
               "\n";
    };
    home.write(folder + ".project_root", "/home/dev/app\n");
    write(folder + "chats/own/sub.jsonl", message("a sub-agent's"));
    write(folder + "logs.json", "[]");
    std::string text = R"({"sessionId":"own","projectHash":"x","startTime":"2026-11-21T02:09:00Z","kind":"main"})"
                       "\n" +
                       message("go");
    write(file, text);
    State state = watcher.poll(written).at(0);
    EXPECT_EQ(watcher.watchedPaths(), std::vector{home.path(file)});
    EXPECT_EQ(state.session + " " + *state.cwd + " " + phaseName(state), "own /home/dev/app working");

    text += R"({"$set":{"messages":[{"id":"h","content":")" + std::string(170000, 'x') +
            R"("}],"lastUpdated":"2026-11-21T02:10:07Z"}})"
            "\n";
    write(file, text);
    state = watcher.poll(written).at(0);
    EXPECT_EQ(state.session + " " + *state.prompt + " " + phaseName(state), "own go interrupted");
    EXPECT_EQ(state.phaseSince, written + 7s);
    write(file, text + message("more"));
    state = watcher.poll(written).at(0);
    EXPECT_EQ(*state.prompt + " " + phaseName(state), "more working");
    EXPECT_EQ(state.startedAt, written - 60s);

    // A reply after which a sub-agent writes has not ended the turn.
    text =
        message("go") + R"({"id":"r","timestamp":"2026-11-21T02:10:01Z","type":"gemini","content":"Looking."})" + "\n";
    write(file, text);
    EXPECT_EQ(phaseName(watcher.poll(written + 2s).at(0)), "working+");
    home.age(folder + "chats/own/sub.jsonl", written + 3s);
    EXPECT_EQ(phaseName(watcher.poll(written + 9s).at(0)), "done") << "another session's";
    write(file, R"({"sessionId":"own","startTime":"2026-11-21T02:09:00Z"})"
                "\n" +
                    text);
    EXPECT_EQ(phaseName(watcher.poll(written + 9s).at(0)), "working");
}

/// Every state that a poll could have seen while an agent wrote one of the captures.
TEST(TranscriptReplay, EveryPrefixOfACaptureMakesSense) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator{KIPPO_FIXTURES "/transcripts"}) {
        if (!entry.is_regular_file() || entry.path().string().contains("/gemini/")) {
            continue;
        }
        SCOPED_TRACE(entry.path());
        const bool codex = entry.path().filename().string().starts_with("rollout");
        const auto parser = codex ? TranscriptWatcher::parseCodex : TranscriptWatcher::parseClaude;
        std::vector<std::string> lines;
        int running = 0;
        for (const std::string& line : samples::linesOf(entry.path())) {
            samples::write(line, lines, parser);
            const auto state = samples::parse(parser, lines);
            ASSERT_TRUE(state);
            running += line.contains(R"("type":"tool_use")") || line.contains(R"("type":"function_call",)");
            running -= line.contains(R"("type":"tool_result")") || line.contains(R"("type":"CommandExecution")");
            if (running > 0) {
                EXPECT_EQ(phaseName(*state), "working") << line;
                ASSERT_TRUE(state->activity);
                EXPECT_EQ(state->activity->kind, AgentActivity::Kind::shell);
                EXPECT_FALSE(state->activity->finished) << line;
            }
        }
        EXPECT_EQ(running, 0);
        const auto end = samples::parse(parser, lines);
        EXPECT_EQ(end->interactive, entry.path().string().contains("tui-permission"));
        EXPECT_TRUE(entry.path().string().contains(end->session));
        EXPECT_EQ(end->cwd, codex ? "/home/dev/codex" : "/home/dev/claude");
        EXPECT_TRUE(end->prompt == "List the files here" ||
                    end->prompt == "Which port? [[scenario:needs-you]] [[command:ls]]");
    }
}

} // namespace kippo
