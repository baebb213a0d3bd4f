#include "Agents/SessionMerge.h"
#include "Fakes/Each.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

namespace kippo {

namespace {

using Phase = TranscriptWatcher::State::Phase;
using SessionMerge::Memory;

/// What all witnesses say at one moment, with the words of a test. Times are seconds after a fixed start.
struct World {
    std::map<std::string, HookState> hooks;
    std::map<std::string, TranscriptWatcher::State> transcripts;
    std::vector<RegistryEntry> registry;
    ProcessScanner::Snapshot snapshot;
    std::set<std::string> hiddenKinds;
    std::vector<std::string> hiddenProcesses;
    std::map<std::string, Date> dismissedAt;
    std::map<std::string, Date> clearedAt;
    Memory memory;
    double scannedAt = -1; ///< when the snapshot was taken; none when negative

    static Date at(double seconds) { return dateFromUnix(1795226400 + seconds); }

    HookState& hook(double when, const std::string& name, HookBridge::Event event = {}, const std::string& id = "s") {
        event.time = at(when);
        event.name = name;
        event.session = id;
        event.cwd = event.cwd ? event.cwd : "/home/dev/app";
        hooks[id].apply(event);
        return hooks[id];
    }
    TranscriptWatcher::State& transcript(double when, Phase phase, const std::string& id = "s") {
        auto& state = transcripts[id];
        state.session = id;
        state.cwd = "/home/dev/app";
        state.phase = std::move(phase);
        state.phaseSince = state.lastActivity = at(when);
        return state;
    }
    RegistryEntry& registered(double when, RegistryEntry::Status status, Pid pid = 10, const std::string& id = "s") {
        registry.push_back({.pid = pid,
                            .session = id,
                            .cwd = "/home/dev/app",
                            .entrypoint = "cli",
                            .procStart = 1000U,
                            .status = status,
                            .waitingFor = {},
                            .statusUpdatedAt = at(when)});
        if (status == RegistryEntry::Status::waiting) {
            registry.back().waitingFor = "permission prompt";
        }
        return registry.back();
    }
    ProcInfo& process(Pid pid, double started, const std::string& command = "claude", Pid parent = 1) {
        ProcInfo proc{.pid = pid, .ppid = parent, .rssKB = 1000, .cpu = 1, .uptime = 0, .command = command};
        proc.startTicks = 1000;
        snapshot.children[parent].push_back(pid);
        starts_[pid] = started;
        scannedAt = 0;
        return snapshot.procs[pid] = proc;
    }
    void root(Pid pid, double started, AgentKind kind = AgentKind::claude,
              const std::string& folder = "/home/dev/app") {
        process(pid, started, std::string{rawValue(kind)});
        snapshot.agentRoots.emplace_back(pid, kind);
        snapshot.cwds[pid] = folder;
    }
    void kill(Pid pid) {
        snapshot.procs.erase(pid);
        std::erase_if(snapshot.agentRoots, [pid](const auto& entry) { return entry.first == pid; });
    }

    SessionMerge::Output merge(double when) {
        if (scannedAt >= 0) {
            scannedAt = when;
        }
        for (auto& [pid, proc] : snapshot.procs) {
            proc.uptime = when - starts_[pid];
        }
        return SessionMerge::merge({.hooks = hooks,
                                    .transcripts = transcripts,
                                    .registry = registry,
                                    .snapshot = scannedAt >= 0 ? &snapshot : nullptr,
                                    .snapshotTime = at(scannedAt),
                                    .now = at(when),
                                    .hiddenKinds = hiddenKinds,
                                    .hiddenProcesses = hiddenProcesses,
                                    .dismissedAt = dismissedAt,
                                    .clearedAt = clearedAt},
                                   memory);
    }
    /// The process of each session; 0 for none.
    std::map<std::string, Pid> pids(double when) {
        std::map<std::string, Pid> found;
        for (const AgentSession& session : merge(when).sessions) {
            found[session.id] = session.rootPID.value_or(0);
        }
        return found;
    }

private:
    std::map<Pid, double> starts_;
};

using Event = HookBridge::Event;
using Pids = std::map<std::string, Pid>;

Event with(std::optional<std::string> Event::* member, const std::string& text, Event event = {}) {
    event.*member = text;
    return event;
}
Event tool(const std::string& name) { return with(&Event::tool, name); }
Event reply(const std::string& text) { return with(&Event::reply, text); }
Event from(const std::string& agent, Event event = {}) { return with(&Event::source, agent, std::move(event)); }
Event notification(const std::string& kind, const std::string& message) {
    return with(&Event::kind, kind, with(&Event::message, message));
}

std::string describe(const AgentStatus& status) {
    return std::string{rawValue(status.value)} + (status.isNeedsYou() ? ": " + status.sentence : "");
}

using Registry = RegistryEntry::Status;
constexpr auto working = Phase::Case::working;
constexpr auto approveCommand = "needsYou: Waiting for you to approve a command";

// What the witnesses of the table below say.
using Says = std::function<void(World&)>;

Says hook(double when, const std::string& name, const HookBridge::Event& event = {}) {
    return [=](World& w) { w.hook(when, name, event); };
}
Says root(AgentKind kind = AgentKind::claude) {
    return [=](World& w) { w.root(10, -100, kind); };
}
Says process(Pid pid, double started, const std::string& command, Pid parent = 1) {
    return [=](World& w) { w.process(pid, started, command, parent); };
}
Says registry(double when, RegistryEntry::Status status) {
    return [=](World& w) { w.registered(when, status); };
}
Says transcript(double when, Phase::Case phase, const std::string& sentence = {}) {
    return [=](World& w) { w.transcript(when, {phase, sentence}); };
}
/// A transcript of `kind` whose last line made a call that has no result, and its process at `cpu`.
Says openCall(AgentKind kind, double when, const std::string& sentence, double cpu = 1, Phase::Case phase = working,
              const std::string& options = "") {
    return [=](World& w) {
        w.root(10, -100, kind);
        w.snapshot.procs[10].command += options;
        w.snapshot.procs[10].cpu = cpu;
        auto& state = w.transcript(when, {phase, {}});
        state.agent = kind;
        state.openCall = {.since = World::at(when), .sentence = sentence};
    };
}

} // namespace

// One row per rule of docs/sessions.md on status: what the witnesses say by the 30th second, and what the user is told.
TEST(SessionMerge, TellsTheStatusFromAllWitnesses) {
    struct Row {
        const char* rule;
        std::vector<Says> says;
        std::string expected;
    };
    const Says asked = [](World& w) {
        w.root(10, -100);
        w.hook(0, "UserPromptSubmit");
        w.hook(5, "PreToolUse", tool("Bash"));
        w.hook(6, "PermissionRequest", tool("Bash"));
    };
    const Says submitted = hook(0, "UserPromptSubmit"), otherProcess = process(99, -9, "bash");
    const std::vector<Row> rows{
        {"hooks alone: working", {submitted}, "working"},
        {"hooks alone: waiting", {asked}, approveCommand},
        {"a vaguer notification keeps the sentence",
         {asked, hook(12, "Notification", notification("permission_prompt", "Claude needs your permission"))},
         approveCommand},
        {"S1 the registry waits behind a parallel tool",
         {asked, registry(6.2, Registry::waiting), hook(8, "PostToolUse", tool("Read"))},
         "needsYou: Waiting for your approval"},
        {"S2 granted", {asked, registry(9, Registry::busy)}, "working"},
        {"S2 an older busy proves nothing", {asked, registry(1, Registry::busy)}, approveCommand},
        {"S3 declined", {asked, registry(9, Registry::idle)}, "idle"},
        {"S3 does not clear an error",
         {root(), submitted, hook(3, "StopFailure"), registry(4, Registry::idle)},
         "needsYou: Stopped with an error"},
        {"S4 Escape before any output", {root(), submitted, registry(4, Registry::idle)}, "idle"},
        {"S4 late events of a sub-agent",
         {root(), submitted, transcript(4, Phase::Case::done), registry(4, Registry::idle),
          hook(9, "PostToolUse", tool("Read"))},
         "done"},
        {"S5 a new turn without hooks", {root(), hook(0, "Stop"), registry(4, Registry::busy)}, "working"},
        {"S6 declined, by the transcript", {asked, transcript(9, Phase::Case::interrupted)}, "idle"},
        {"S6 an older interruption is over",
         {transcript(1, Phase::Case::interrupted), hook(5, "UserPromptSubmit")},
         "working"},
        {"S7 a question in the transcript",
         {submitted, transcript(4.9, Phase::Case::needsYou, "Has a question for you"),
          hook(5, "PreToolUse", tool("AskUserQuestion"))},
         "needsYou: Has a question for you"},
        {"S8 the transcript went on", {asked, transcript(9, working)}, "working"},
        {"S8 the call itself is older", {asked, transcript(5.5, working)}, approveCommand},
        {"S9 the granted command runs",
         {root(AgentKind::codex), hook(6, "PermissionRequest", from("codex", tool("Bash"))),
          process(11, 9, "cargo build", 10)},
         "working"},
        {"S9 an older child proves nothing",
         {root(AgentKind::codex), process(11, -50, "node mcp-server.js", 10),
          hook(6, "PermissionRequest", from("codex", tool("Bash")))},
         approveCommand},
        {"S10 the end without its hook", {submitted, transcript(8, Phase::Case::done)}, "done"},
        {"S10 a failure without its hook",
         {submitted, [](World& w) { w.transcript(8, {working, {}}).failure = "API Error: 500"; }},
         "needsYou: Stopped: API Error: 500"},
        {"S11 a new turn in the transcript", {hook(0, "Stop"), transcript(8, working)}, "working"},
        {"S12 the reply asks", {hook(0, "Stop", reply("Two ports.\nNeeds you: which port?"))}, "needsYou: which port?"},
        {"S12 the hook's copy was cut before the question",
         {submitted, hook(9, "Stop", reply("A long reply that was")),
          [](World& w) { w.transcript(8.8, {Phase::Case::done, {}}).markerNeedsYou = "which port?"; }},
         "needsYou: which port?"},
        {"S12 the question of an earlier turn is answered",
         {[](World& w) { w.transcript(1, {Phase::Case::needsYou, "which port?"}).markerNeedsYou = "which port?"; },
          hook(5, "UserPromptSubmit"), hook(9, "Stop", reply("Done: used 3000"))},
         "done"},
        {"S14 interrupted", {transcript(1, Phase::Case::interrupted)}, "idle"},
        {"S19 a failed turn ends like any other",
         {root(AgentKind::gemini), hook(0, "BeforeAgent", from("gemini")),
          [](World& w) { w.transcript(4, {working, {}}).failure = "Try later"; },
          hook(4.1, "AfterAgent", from("gemini", reply("[no response text]")))},
         "needsYou: Stopped: Try later"},
        {"Gemini CLI asks in its own words",
         {root(AgentKind::gemini), hook(0, "BeforeTool", from("gemini", tool("run_shell_command"))),
          hook(1, "Notification", from("gemini", notification("ToolPermission", "Tool Confirm requires execution")))},
         approveCommand},
        {"S17 Codex waits", {openCall(AgentKind::codex, 20, "Approve?")}, "needsYou: Approve?"},
        {"S17 too early to tell", {openCall(AgentKind::codex, 28, "Approve?")}, "working"},
        {"S17 it runs", {openCall(AgentKind::codex, 20, "Approve?"), process(11, 20.1, "make", 10)}, "working"},
        {"S17 it runs under the server that another Codex started",
         {openCall(AgentKind::codex, 20, "Approve?"), process(50, -999, "/x/codex app-server --listen unix://"),
          process(51, 21, "make", 50)},
         "working"},
        {"S17 not in a run without a terminal",
         {openCall(AgentKind::codex, 20, "Approve?"), [](World& w) { w.transcripts["s"].interactive = false; }},
         "working"},
        {"S17 Gemini CLI rests", {openCall(AgentKind::gemini, 20, "Approve?")}, "needsYou: Approve?"},
        {"S17 its wheel turns", {openCall(AgentKind::gemini, 20, "Approve?", 13)}, "working"},
        {"S17 it answers one prompt and exits",
         {openCall(AgentKind::gemini, 20, "Approve?", 1, working, " --yolo -p hi")},
         "working"},
        {"S17 hooks know better", {openCall(AgentKind::codex, 20, "Approve?"), hook(21, "PreToolUse")}, "working"},
        {"S18 a command after the last word",
         {openCall(AgentKind::gemini, 20, "", 1, Phase::Case::done), process(11, 20.4, "bash -c make", 10)},
         "working"},
        {"S18 and none", {openCall(AgentKind::gemini, 20, "", 13, Phase::Case::done)}, "done"},
        {"S10 not while a call may be open",
         {openCall(AgentKind::gemini, 20, "", 1, Phase::Case::done), hook(19.9, "BeforeTool", from("gemini"))},
         "working"},
        {"S15 the registry alone", {root(), registry(1, Registry::waiting)}, "needsYou: Waiting for your approval"},
        {"headless: the registry says nothing", {root(), submitted, registry(1, Registry::unknown)}, "working"},
        {"L3, G4 killed at work",
         {root(), submitted, [](World& w) { w.merge(1); }, [](World& w) { w.kill(10); }},
         "idle"},
        {"L3 a registry entry that a kill left behind",
         {otherProcess, hook(29, "UserPromptSubmit"), registry(1, Registry::busy)},
         "idle"},
        {"L3 its pid went to another program",
         {root(), [](World& w) { w.snapshot.procs[10].startTicks = 77; },
          [](World& w) { w.snapshot.cwds[10] = "/elsewhere"; }, hook(29, "UserPromptSubmit"),
          registry(1, Registry::busy)},
         "idle"},
        {"L4 no such process at all", {otherProcess, submitted}, "idle"},
        {"L4 not for agents that may live in an editor",
         {otherProcess, hook(0, "beforeSubmitPrompt", from("cursor"))},
         "working"},
        {"L5 heard of again, so it runs elsewhere",
         {otherProcess, submitted, [](World& w) { w.merge(5); }, hook(6, "PreToolUse", tool("Read"))},
         "working"},
        {"G2 the error outlives the session",
         {submitted, hook(3, "SessionEnd"), hook(3.1, "StopFailure")},
         "needsYou: Stopped with an error"},
        {"G3 a headless run asked",
         {hook(0, "Stop", reply("Needs you: which port?")), hook(1, "SessionEnd")},
         "needsYou: which port?"},
        {"G3 a person left the terminal",
         {hook(0, "Stop", reply("Needs you: which port?")),
          [](World& w) { w.transcript(-0.1, {Phase::Case::done, {}}).interactive = true; }, hook(1, "SessionEnd")},
         "done"},
    };
    for (const Row& row : rows) {
        World world;
        for (const Says& says : row.says) {
            says(world);
        }
        const auto sessions = world.merge(30).sessions;
        const auto found = std::ranges::find(sessions, "s", &AgentSession::id);
        ASSERT_NE(found, sessions.end()) << row.rule;
        EXPECT_EQ(describe(found->status), row.expected) << row.rule;
    }
}

TEST(SessionMerge, MakesOneRowOfHookTranscriptAndProcess) {
    World w;
    w.root(10, -5);
    w.process(11, -4, "node server.js", 10).cpu = 7;
    w.snapshot.ports[11] = {5173, 3000};
    w.hook(0, "UserPromptSubmit", with(&Event::prompt, "Fix  the\nbug"));
    w.transcript(1, {working, {}}).entrypoint = "cli";
    const auto output = w.merge(2);
    ASSERT_EQ(output.sessions.size(), 1U);
    const AgentSession& session = output.sessions[0];
    EXPECT_EQ(session.rootPID, 10);
    EXPECT_EQ(session.memoryKB, 2000);
    EXPECT_DOUBLE_EQ(session.cpu, 8);
    EXPECT_EQ(session.ports, (std::vector<int>{3000, 5173}));
    EXPECT_EQ(session.childPorts.at(11).size(), 2U);
    EXPECT_EQ(session.prompt, "Fix the bug");
    EXPECT_EQ(session.entrypoint, "cli");
    EXPECT_EQ(session.workingSince, World::at(0));
}

TEST(SessionMerge, KeepsTwoSessionsInOneFolderApart) {
    World w;
    w.root(10, 0, AgentKind::codex);
    w.root(20, 50, AgentKind::codex);
    const auto codex = from("codex");
    w.hook(1, "SessionStart", codex, "first");
    w.hook(51, "SessionStart", codex, "second");
    const Pids expected{{"first", 10}, {"second", 20}};
    EXPECT_EQ(w.pids(52), expected);
    // Whoever speaks last, the processes stay where they are.
    w.hook(60, "UserPromptSubmit", codex, "first");
    EXPECT_EQ(w.pids(61), expected);
    // A third session in the first one's process: the one that was silent longest has lost it.
    w.hook(70, "UserPromptSubmit", codex, "second");
    w.hook(80, "SessionStart", codex, "third");
    w.hook(81, "UserPromptSubmit", codex, "third");
    EXPECT_EQ(w.pids(82), (Pids{{"first", 0}, {"second", 20}, {"third", 10}}));
}

// Found long after they began: what they do now tells nothing of which is which, when they began does.
TEST(SessionMerge, MatchesByTheBeginningThatATranscriptTells) {
    World w;
    w.root(10, -500, AgentKind::gemini);
    w.root(20, -100, AgentKind::gemini);
    for (const auto& [id, began, spoke] : {std::tuple{"first", -495, 3}, {"second", -98, 1}}) {
        auto& state = w.transcript(spoke, {working, {}}, id);
        state.agent = AgentKind::gemini;
        state.startedAt = World::at(began);
    }
    EXPECT_EQ(w.pids(6), (Pids{{"first", 10}, {"second", 20}}));
}

TEST(SessionMerge, LetsTheProcessOfAnEndedSessionLeave) {
    World w;
    w.root(10, -100);
    w.hook(0, "UserPromptSubmit");
    w.merge(1);
    w.hook(2, "SessionEnd");
    EXPECT_EQ(w.merge(3).sessions.size(), 1U);
    EXPECT_EQ(w.merge(13).sessions.size(), 2U) << "it stayed: an agent without a session";
}

TEST(SessionMerge, TiesByTheRegistryWhateverTheFolder) {
    World w;
    w.root(10, 0);
    w.root(20, 1);
    w.hook(2, "UserPromptSubmit", {}, "a");
    w.hook(3, "UserPromptSubmit", {}, "b");
    w.registered(3, Registry::busy, 20, "a");
    w.registered(3, Registry::busy, 10, "b");
    EXPECT_EQ(w.pids(5), (Pids{{"a", 20}, {"b", 10}}));
    // After /clear the process goes on under a new id; the old session is over.
    w.hook(6, "SessionEnd", {}, "a");
    w.hook(7, "UserPromptSubmit", {}, "c");
    EXPECT_EQ(w.pids(9), (Pids{{"a", 0}, {"b", 10}, {"c", 20}}));
}

TEST(SessionMerge, ShowsAgentsOfWhichOnlyTheProcessIsKnown) {
    World w;
    w.root(10, 0, AgentKind::aider);
    w.snapshot.procs[10].cpu = 30;
    auto session = w.merge(5).sessions.at(0);
    EXPECT_EQ(session.id, "pid-10");
    EXPECT_EQ(session.sentence(false), "Busy");
    w.snapshot.procs[10].cpu = 6; // between the two bounds it stays busy
    EXPECT_EQ(w.merge(8).sessions.at(0).sentence(false), "Busy");
    w.snapshot.procs[10].cpu = 1;
    session = w.merge(11).sessions.at(0);
    EXPECT_EQ(session.sentence(false), "Open, not busy");
    EXPECT_EQ(session.lastEvent, World::at(8));
    w.snapshot.procs[10].cpu = 6;
    EXPECT_TRUE(w.merge(14).sessions.at(0).status.isIdle());
}

TEST(SessionMerge, LetsRowsLeaveInTheirTime) {
    struct Row {
        const char* what;
        std::vector<Says> says;
        double stays; ///< seconds after the last news; the row is gone a moment later
    };
    const Says end = hook(1, "SessionEnd"), prompted = hook(-1, "UserPromptSubmit");
    const std::vector<Row> rows{
        {"ended at work", {hook(0, "UserPromptSubmit"), end}, 300},
        {"done and gone", {prompted, hook(0, "Stop", reply("Done: it")), end}, 1800},
        {"asked and gone", {prompted, hook(0, "Stop", reply("Needs you: which?")), end}, 7200},
    };
    for (const Row& row : rows) {
        World world;
        for (const Says& says : row.says) {
            says(world);
        }
        EXPECT_EQ(world.merge(row.stays - 1).sessions.size(), 1U) << row.what;
        EXPECT_EQ(world.merge(row.stays + 1).sessions.size(), 0U) << row.what;
    }
    World never;
    never.hook(0, "SessionStart");
    never.hook(1, "SessionEnd");
    EXPECT_TRUE(never.merge(2).sessions.empty());
}

TEST(SessionMerge, TakesOffWhatTheUserDoesNotWantToSee) {
    World w;
    w.hook(0, "UserPromptSubmit");
    w.hook(5, "Stop");
    w.dismissedAt["s"] = w.merge(6).sessions.at(0).lastEvent;
    EXPECT_TRUE(w.merge(7).sessions.empty());
    w.hook(65, "Notification", notification("idle_prompt", "Claude is waiting for your input"));
    EXPECT_TRUE(w.merge(66).sessions.empty());
    w.hook(70, "UserPromptSubmit");
    EXPECT_EQ(w.merge(71).sessions.size(), 1U);
    w.hiddenKinds.insert("claude");
    EXPECT_TRUE(w.merge(72).sessions.empty());
}

TEST(SessionMerge, OrdersByWhatMattersAndStaysCalm) {
    World w;
    w.hook(0, "UserPromptSubmit", {}, "w1");
    w.hook(10, "UserPromptSubmit", {}, "w2");
    w.hook(1, "Stop", {}, "d1");
    w.hook(20, "Stop", {}, "d2");
    w.hook(5, "PermissionRequest", tool("Bash"), "n1");
    w.hook(6, "PermissionRequest", tool("Edit"), "n2");
    const std::vector<std::string> order{"n2", "n1", "w2", "w1", "d2", "d1"};
    EXPECT_EQ(each(w.merge(21).sessions, &AgentSession::id), order);
    w.hook(25, "PreToolUse", tool("Read"), "w1");
    EXPECT_EQ(each(w.merge(26).sessions, &AgentSession::id), order);
}

TEST(SessionMerge, NamesTheAgentByItsTranscriptThenByTheHook) {
    World w;
    w.hook(0, "UserPromptSubmit", from("mytool"), "a");
    w.hook(0, "UserPromptSubmit", {}, "b");
    w.transcript(0, {working, {}}, "b").agent = AgentKind::codex;
    w.transcript(0, {working, {}}, "c").entrypoint = "claude-desktop";
    w.transcript(0, {working, {}}, "d").isSubagent = true;
    w.transcript(0, {working, {}}, "e").cwd.reset();
    std::map<std::string, std::string> titles;
    for (const AgentSession& session : w.merge(1).sessions) {
        titles[session.id] = session.title();
    }
    EXPECT_EQ(titles, (std::map<std::string, std::string>{{"a", "mytool"}, {"b", "Codex"}, {"c", "Claude"}}));
}

TEST(SessionMerge, ListsWhatWasLeftRunningWithoutWhatTheUserHid) {
    World w;
    w.snapshot.detached.push_back(w.process(30, -100, "node /srv/vite dev"));
    w.snapshot.detached.push_back(w.process(31, -100, "python3 worker.py"));
    w.snapshot.ports[30] = {5173};
    w.hiddenProcesses = {w.snapshot.procs[31].friendlyName()};
    const auto detached = w.merge(1).detached;
    ASSERT_EQ(detached.size(), 1U);
    EXPECT_EQ(detached[0].ports, std::vector<int>{5173});
}

} // namespace kippo
