#include "Agents/TranscriptSamples.h"
#include "Fakes/AgentMachine.h"
#include "Fakes/FakeDefaults.h"
#include "Fakes/FakeScheduler.h"
#include "Fakes/TimeZone.h"
#include "Support/Text.h"

#include <gtest/gtest.h>

namespace kippo {

namespace {

const std::string fixtures = KIPPO_FIXTURES;

/// One captured run of an agent in a private home: its hooks go through hook mode, its transcripts lie where it wrote
/// them.
struct Replay : AgentMachine {
    Replay(std::string agentName, std::string scenarioName)
        : agent(std::move(agentName)), scenario(std::move(scenarioName)) {
        processes.table.push_back(process(2, 1, 9e4, "bash"));
    }

    /// Lays the transcripts out where the agent wrote them.
    void layOutTranscripts() {
        const std::map<std::string, std::string> roots{
            {"claude", ".claude/projects"}, {"codex", ".codex/sessions"}, {"gemini", ".gemini/tmp"}};
        const std::string from = fixtures + "/transcripts/" + agent + "/" + scenario;
        if (std::filesystem::exists(from)) {
            std::filesystem::create_directories(home.path(roots.at(agent)));
            std::filesystem::copy(from, home.path(roots.at(agent)), std::filesystem::copy_options::recursive);
        }
        for (const auto& entry : std::filesystem::recursive_directory_iterator{home.path()}) {
            home.age(entry.path(), end);
        }
    }

    /// Sends the first `count` captured events through hook mode, the last one at the end of the run.
    void sendHooks(std::size_t count) {
        const auto lines = samples::linesOf(fixtures + "/hooks/" + agent + "/" + scenario + ".jsonl");
        for (std::size_t i = 0; i < std::min(count, lines.size()); ++i) {
            const Seconds before{0.05 * static_cast<double>(std::min(count, lines.size()) - 1 - i)};
            const auto record = HookBridge::record(lines[i], agent, end - before);
            ASSERT_TRUE(record) << lines[i];
            const auto event = HookBridge::parse(Text::trimmed(*record)).value_or(HookBridge::Event{});
            EXPECT_TRUE(lines[i].contains("\"session_id\": \"" + event.session + "\"")) << lines[i];
            EXPECT_TRUE(lines[i].contains("\"hook_event_name\": \"" + event.name + "\"")) << lines[i];
            EXPECT_EQ(rawValue(event.judgedBy()), agent);
            EXPECT_EQ(event.detail.has_value(), lines[i].contains("\"tool_input\"")) << lines[i];
            home.append(home.places().eventLog(), *record);
        }
    }

    /// The agent's process runs in the folder of the captures.
    void startProcess() {
        processes.table.push_back(process(10, 2, 600, agent == "claude" ? "claude" : "node /home/dev/bin/" + agent));
        processes.cwds[10] = "/home/dev/" + agent;
    }

    /// What the user is told `later` seconds after the end.
    std::string told(double later) {
        scheduler.advance(Seconds{later});
        store.refreshOnce();
        if (store.sessions().size() != 1) {
            return std::to_string(store.sessions().size()) + " sessions";
        }
        const AgentSession& session = store.sessions()[0];
        return std::string{rawValue(session.kind)} + " " + std::string{rawValue(session.status.value)} + ": " +
               session.sentence(true);
    }

    TimeZone zone{"UTC"}; // the captured folders are named by the day
    std::string agent, scenario;
    /// Just after the captures were taken.
    Date end = dateFromUnix(1795226880);
    FakeScheduler scheduler{end};
    FakeDefaults defaults;
    AgentStore store{home.places(), ports(scheduler, defaults)};
};

constexpr std::size_t all = 1000;

} // namespace

// After each captured run, when its process is gone, by hooks and transcripts, by hooks alone and by transcripts alone.
TEST(CaptureReplay, EveryRunEndsAsAPersonWouldSay) {
    struct Row {
        std::string agent, scenario, told, byHooksAlone, byTranscriptAlone;
    };
    const std::string listed = " done: listed the files", asks = " needsYou: which port?", none = "0 sessions";
    const std::string left = " done: There are two candidate ports.";
    const std::vector<Row> rows{
        {"claude", "print-basic", listed, listed, listed},
        {"claude", "print-parallel", listed, listed, listed},
        {"claude", "print-toolfail", listed, listed, listed},
        {"claude", "print-needs-you", asks, asks, asks},
        {"claude", "print-fail500", " needsYou: Stopped with an error", " needsYou: Stopped with an error",
         " needsYou: Stopped: API Error: 500 Fake failure 500. This is a server-side issue, usually temporary — try "
         "again in a moment. If it persists, check your inference gateway (127.0.0.1:42739)."},
        // The transcript knows that a person sat at the terminal and left after the question; the hooks do not.
        {"claude", "tui-permission", left, asks, left},
        {"codex", "exec-basic", listed, listed, listed},
        {"codex", "exec-parallel", listed, listed, listed},
        {"codex", "exec-needs-you", asks, asks, asks},
        {"codex", "tui-permission", left, asks, left},
        {"gemini", "print-basic", listed, listed, listed},
        {"gemini", "print-parallel", listed, listed, none},
        {"gemini", "print-needs-you", asks, asks, asks},
        {"gemini", "print-fail500", " idle: Ended", " idle: Ended", none},
    };
    for (const Row& row : rows) {
        for (const auto& [hooks, transcripts, told] :
             {std::tuple{true, true, row.told}, std::tuple{true, false, row.byHooksAlone},
              std::tuple{false, true, row.byTranscriptAlone}}) {
            Replay replay{row.agent, row.scenario};
            if (transcripts) {
                replay.layOutTranscripts();
            }
            if (hooks) {
                replay.sendHooks(all);
            }
            EXPECT_EQ(replay.told(10), told == none ? none : row.agent + told)
                << row.agent << " " << row.scenario << (hooks ? " hooks" : "") << (transcripts ? " transcripts" : "");
        }
    }
}

// While a run goes on: what the user is told after each of its events, with the agent's process there.
TEST(CaptureReplay, FollowsATerminalSessionEventByEvent) {
    for (const std::string agent : {"claude", "codex"}) {
        std::vector<std::string> told;
        for (std::size_t count = 1; count <= 12; ++count) {
            Replay replay{agent, "tui-permission"};
            replay.startProcess();
            replay.sendHooks(count);
            told.push_back(replay.told(1));
        }
        const std::string approve = "needsYou: Waiting for you to approve a command",
                          list = "working: Working on: List ";
        const std::string which = "working: Working on: Which port? [[scenario:needs-you]] [[command:ls]]";
        std::vector<std::string> expected{"idle: Open, not busy", list + "the files here",
                                          "working: Running echo hello > f.txt; ls", approve};
        if (agent == "claude") {
            expected.push_back(approve); // the notification that follows 6 s later
        }
        expected.insert(expected.end(),
                        {list + "the files here", "done: listed the files", which, "working: Running ls"});
        if (agent == "codex") {
            expected.push_back(approve);
        }
        expected.insert(expected.end(), {which, "needsYou: which port?"});
        for (std::string& sentence : expected) {
            sentence.insert(0, agent + " ");
        }
        EXPECT_EQ(std::vector(told.begin(), told.begin() + 11), expected);
        // Its last event says that the session has ended; the process becomes a row of its own for the moment it lives
        // on.
        EXPECT_TRUE(told[11].starts_with("2 sessions")) << told[11];
    }
}

} // namespace kippo
