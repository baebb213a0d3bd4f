#include "Agents/UsageSamples.h"
#include "Fakes/AgentMachine.h"
#include "Fakes/Each.h"
#include "Fakes/FakeDefaults.h"
#include "Fakes/FakeScheduler.h"

#include <deque>
#include <fmt/format.h>
#include <gmock/gmock.h>

namespace kippo {

namespace {

/// A queue that counts the pieces of work, and holds them where the test wants to run them itself.
class HeldQueue final : public SerialQueue {
public:
    explicit HeldQueue(bool holds = true) : holds_(holds) {}

    void run(std::function<void()> work, std::function<void()> then) override {
        ++pieces;
        waiting.push_back([work = std::move(work), then = std::move(then)] {
            work();
            then();
        });
        if (!holds_) {
            runAll();
        }
    }
    void runAll() {
        while (!waiting.empty()) {
            const auto next = std::move(waiting.front());
            waiting.pop_front();
            next();
        }
    }
    std::deque<std::function<void()>> waiting;
    int pieces = 0;

private:
    bool holds_;
};

struct AgentStoreTest : testing::Test, AgentMachine {
    FakeScheduler scheduler;
    FakeDefaults defaults;
    std::vector<std::string> alerts;

    AgentStore::Ports ports() { return AgentMachine::ports(scheduler, defaults); }

    std::unique_ptr<AgentStore> makeStore(AgentStore::Role role = AgentStore::Role::keeper) {
        auto store = std::make_unique<AgentStore>(home.places(), ports(), role);
        store->onAlert = [this](const AgentSession& session) {
            alerts.push_back(session.id + " " + std::string{rawValue(session.status.value)});
        };
        return store;
    }

    void event(const std::string& name, const std::string& more = "", const std::string& id = "s") const {
        AgentMachine::event(scheduler.now(), name, more, id);
    }

    static std::string status(const AgentStore& store, const std::string& id = "s") {
        const auto found = std::ranges::find(store.sessions(), id, &AgentSession::id);
        return found == store.sessions().end() ? "none" : std::string{rawValue(found->status.value)};
    }
};

} // namespace

TEST_F(AgentStoreTest, FollowsTheLogAsItGrows) {
    event("SessionStart");
    const auto store = makeStore();
    store->start();
    EXPECT_EQ(status(*store), "idle");

    event("UserPromptSubmit", R"(,"p":"Fix it")");
    scheduler.advance(Seconds{0.5});
    EXPECT_EQ(status(*store), "working");
    EXPECT_EQ(store->sessions()[0].prompt, "Fix it");

    // Half a line waits for its other half; damage in between costs only itself.
    const auto log = home.places().eventLog();
    home.append(log, "garbage\n{\"t\":\"1\",\"e\":\"Stop\",\"s\":\"s\"}\n{\"t\":");
    scheduler.advance(Seconds{0.5});
    EXPECT_EQ(status(*store), "working");
    home.append(log, fmt::format("{:.3f},\"e\":\"Stop\",\"s\":\"s\"}}\n", unixSeconds(scheduler.now())));
    scheduler.advance(Seconds{0.5});
    EXPECT_EQ(status(*store), "done");

    // A log that starts again, in place or as a new file, is read from its start.
    home.write(log, "");
    event("UserPromptSubmit");
    scheduler.advance(Seconds{0.5});
    EXPECT_EQ(status(*store), "working");
}

TEST_F(AgentStoreTest, LeavesOldEventsAndOverlongLogsBehind) {
    const double now = unixSeconds(scheduler.now());
    const auto log = home.places().eventLog();
    home.write(log, fmt::format("{{\"t\":{:.1f},\"e\":\"UserPromptSubmit\",\"s\":\"old\"}}\n"
                                "{{\"t\":{:.1f},\"e\":\"UserPromptSubmit\",\"s\":\"new\"}}\n",
                                now - 43201, now - 43199));
    auto store = makeStore();
    store->readEvents(true);
    EXPECT_EQ(store->lastEventAt(), dateFromUnix(now - 43199));

    for (const auto& [size, kept] : {std::pair{2000000, true}, std::pair{2000001, false}}) {
        home.write(log, std::string(static_cast<std::size_t>(size), '\n'));
        makeStore(AgentStore::Role::onlooker)->start();
        EXPECT_TRUE(home.exists(log));
        makeStore()->start();
        EXPECT_EQ(home.exists(log), kept) << size;
    }
}

TEST_F(AgentStoreTest, AlertsOnceForWhatTheUserShouldKnow) {
    const std::string bash = R"(PermissionRequest,"tool":"Bash")", edit = R"(PermissionRequest,"tool":"Edit")";
    const std::string vague = R"(Notification,"n":"permission_prompt","m":"Claude needs your permission")";
    struct Row {
        const char* what;
        std::vector<std::string> happens; ///< seconds that pass, or an event: "b/" of session b, behind "," its members
        std::vector<std::string> alerts;
    };
    const std::vector<Row> rows{
        {"a short turn ends silently", {"UserPromptSubmit", "15", "Stop", "1"}, {}},
        {"a long one does not", {"UserPromptSubmit", "25", "Stop", "60"}, {"s done"}},
        {"a granted request does not cut the turn in two",
         {"UserPromptSubmit", "15", "PermissionRequest", "1", R"(PostToolUse,"tool":"Bash")", "8", "Stop", "1"},
         {"s needsYou", "s done"}},
        {"one wait, one alert", {"UserPromptSubmit", "1", bash, "6", vague, "6"}, {"s needsYou"}},
        {"another wait, another alert", {bash, "1", edit, "1"}, {"s needsYou", "s needsYou"}},
        {"a session first seen is taken as it is", {"new/PermissionRequest", "1"}, {}},
        {"of several the one that needs the user comes last",
         {"UserPromptSubmit", "b/UserPromptSubmit", "30", "PermissionRequest", "b/Stop", "1"},
         {"b done", "s needsYou"}},
        {"a dismissed session that comes back needing the user",
         {"UserPromptSubmit", "1", "dismiss", "1", "PermissionRequest", "1"},
         {"s needsYou"}},
    };
    for (const Row& row : rows) {
        home.write(home.places().eventLog(), "");
        alerts.clear();
        event("SessionStart");
        const auto store = makeStore();
        store->start();
        scheduler.advance(Seconds{5});
        for (const std::string& step : row.happens) {
            const auto slash = step.find('/'), comma = std::min(step.find(','), step.size());
            if (std::isdigit(step[0])) {
                scheduler.advance(Seconds{std::stod(step)});
            } else if (step == "dismiss") {
                store->dismiss(store->sessions().at(0));
            } else if (slash != std::string::npos) {
                event(step.substr(slash + 1), "", step.substr(0, slash));
            } else {
                event(step.substr(0, comma), step.substr(comma));
            }
        }
        EXPECT_EQ(alerts, row.alerts) << row.what;
    }
}

TEST_F(AgentStoreTest, StaysQuietWhileItLearnsWhatIsThere) {
    event("UserPromptSubmit");
    const auto store = makeStore();
    store->start();
    scheduler.advance(Seconds{2});
    event("PermissionRequest");
    scheduler.advance(Seconds{60});
    EXPECT_TRUE(alerts.empty());
    EXPECT_EQ(store->needsYouCount(), 1);
}

TEST_F(AgentStoreTest, LooksLessOftenWhileNobodyLooks) {
    HeldQueue counted{false};
    int& usageScans = counted.pieces;
    scans = &counted;
    const auto store = makeStore();
    store->start();
    processes.listings = usageScans = 0;
    scheduler.advance(Seconds{60});
    EXPECT_EQ(processes.listings, 4);
    EXPECT_EQ(usageScans, 1);

    store->setVisible(true);
    processes.listings = usageScans = 0;
    scheduler.advance(Seconds{60});
    EXPECT_EQ(processes.listings, 20);
    EXPECT_EQ(usageScans, 8); // every 9 s, and once a minute besides
}

TEST_F(AgentStoreTest, RemembersAcrossStarts) {
    {
        const auto store = makeStore();
        store->start();
        event("UserPromptSubmit", R"(,"g":"gemini")");
        event("UserPromptSubmit", R"(,"g":"nobody")", "n");
        scheduler.advance(Seconds{1});
        store->setVisible(AgentKind::gemini, false);
        EXPECT_EQ(store->sessions().size(), 1U);
    }
    const auto store = makeStore();
    ASSERT_EQ(store->lastEventByAgent().size(), 1U);
    EXPECT_TRUE(store->lastEventByAgent().contains(HookAgent::gemini));
    EXPECT_EQ(store->hidden(), std::set<std::string>{"gemini"});
    EXPECT_TRUE(std::holds_alternative<std::vector<std::string>>(*defaults.value("hiddenAgents")));
}

TEST_F(AgentStoreTest, TakesUpTheUsersChoicesAndKeepsThem) {
    processes.table = {process(7, 1, 90, "/opt/bin/Goose session"), process(8, 1, 90, "node /opt/bin/amp"),
                       process(9, 1, 90, "claude")};
    int told = 0;
    const auto names = [](const AgentStore& store) {
        auto all = each(store.sessions(), [](const AgentSession& session) {
            return session.customName.value_or(std::string{rawValue(session.kind)});
        });
        std::ranges::sort(all);
        return all;
    };
    using Names = std::vector<std::string>;
    const auto store = makeStore();
    const auto subscription = store->observe([&told] { ++told; });
    store->start();
    EXPECT_EQ(store->suggestions(), (Names{"amp", "goose"}));
    store->dismissSuggestion("amp");
    EXPECT_EQ(store->suggestions(), Names{"goose"});

    store->watch(" \t");
    store->watch(" /usr/bin/goose \n");
    store->watch("GOOSE");
    EXPECT_EQ(store->watchedNames(), Names{"goose"});
    EXPECT_TRUE(store->suggestions().empty());
    EXPECT_EQ(names(*store), (Names{"Goose", "claude"})) << "without waiting for the next tick";

    // Edited by hand while the application runs.
    defaults.set("watchedAgentNames", Names{" amp", "", "Amp", "goose"});
    EXPECT_EQ(store->watchedNames(), (Names{"amp", "goose"}));
    EXPECT_EQ(names(*store), (Names{"Goose", "amp", "claude"}));
    store->unwatch("Goose");
    EXPECT_EQ(names(*store), (Names{"amp", "claude"}));

    event("UserPromptSubmit");
    scheduler.advance(Seconds{1});
    told = 0;
    store->setLights(AgentKind::claude, false);
    EXPECT_EQ(told, 1);
    EXPECT_TRUE(store->liveSummary());
    EXPECT_FALSE(store->statusLights());
    store->setVisible(AgentKind::custom, false);
    EXPECT_EQ(names(*store), (Names{"claude", "claude"}));

    const auto later = makeStore();
    EXPECT_EQ(later->watchedNames(), Names{"amp"});
    EXPECT_EQ(later->dismissedSuggestions(), std::set<std::string>{"amp"});
    EXPECT_FALSE(later->drivesLights(AgentKind::claude));
    EXPECT_TRUE(later->isHidden(AgentKind::custom));
}

TEST_F(AgentStoreTest, ClearsWhatIsOverUntilThereIsNews) {
    processes.table = {process(7, 1, 1, "claude")};
    processes.cwds[7] = "/x";
    const auto store = makeStore();
    store->start();
    event("SessionStart", "", "open"); // has the process
    event("Stop", R"(,"g":"cursor")", "done");
    event("beforeSubmitPrompt", R"(,"g":"cursor")", "working");
    event("PermissionRequest", R"(,"g":"cursor")", "waiting"); // perhaps in a container
    event("Stop", R"(,"st":"error")", "failed");               // its process is not there
    scheduler.advance(Seconds{30});
    ASSERT_EQ(store->sessions().size(), 5U);
    EXPECT_THAT(each(store->clearable(), &AgentSession::id), testing::UnorderedElementsAre("done", "failed"));
    store->clearFinishedAndOrphaned();
    EXPECT_TRUE(store->clearable().empty());
    EXPECT_EQ(store->sessions().size(), 3U);
    event("UserPromptSubmit", "", "done");
    scheduler.advance(Seconds{1});
    EXPECT_EQ(status(*store, "done"), "working");
    EXPECT_EQ(status(*store, "failed"), "none");
}

TEST_F(AgentStoreTest, EndsOnlyWhatItShows) {
    processes.table = {process(20, 1, 90, "node /p/bin/vite"), process(21, 20, 90, "esbuild"),
                       process(30, 1, 90, "node /p/server.js"), process(40, 1, 90, "node /p/keep.js")};
    const auto store = makeStore();
    store->stop(20); // of no snapshot yet
    store->start();
    ASSERT_EQ(store->detached().size(), 3U);
    store->hideProcess("keep.js");
    store->hideProcess("keep.js");
    EXPECT_EQ(store->hiddenProcesses().size(), 1U);
    store->stop(4711);
    EXPECT_TRUE(processes.terminated.empty());

    store->stop(30);
    EXPECT_EQ(processes.terminated, (std::vector<Pid>{30}));
    std::erase_if(processes.table, [](const ProcInfo& proc) { return proc.pid == 30; });
    scheduler.advance(Seconds{1});
    EXPECT_EQ(store->detached().size(), 1U) << "the list shows it without waiting for the next tick";

    processes.terminated.clear();
    store->stopAllDetached();
    EXPECT_EQ(processes.terminated, (std::vector<Pid>{21, 20}));
    store->unhideProcess("keep.js");
    EXPECT_EQ(store->detached().size(), 2U);
}

TEST_F(AgentStoreTest, DemoStandsInFrontOfTheRealSessions) {
    event("UserPromptSubmit");
    const auto store = makeStore();
    store->start();
    scheduler.advance(Seconds{5});
    AgentSession idle, waits;
    idle.id = "a";
    waits.id = "b";
    waits.status = AgentStatus::needsYou("?");
    store->injectDemo({{"a", idle}, {"b", waits}});
    ASSERT_EQ(store->sessions().size(), 2U);
    EXPECT_EQ(store->sessions()[0].id, "b");
    idle.status = AgentStatus::needsYou("!");
    store->injectDemo({{"a", idle}});
    event("PermissionRequest");
    scheduler.advance(Seconds{5});
    EXPECT_EQ(alerts, std::vector<std::string>{"s needsYou"});
    EXPECT_EQ(status(*store), "none");
    store->clearDemo();
    EXPECT_EQ(status(*store), "needsYou");
}

TEST_F(AgentStoreTest, KnowsWhoIsConnectedFromTheFilesAlone) {
    const auto settings = home.path(".claude/settings.json"), instructions = home.path(".claude/CLAUDE.md");
    const auto commands = [this] { return HookBridge::ourCommands({userFiles, home.path()}, HookAgent::claude); };
    int told = 0;
    const auto store = makeStore();
    const auto subscription = store->observe([&told] { ++told; });
    store->start();
    EXPECT_TRUE(store->connected().empty());
    userFiles.files[settings] = "{ oops";
    store->connect(HookAgent::claude);
    EXPECT_EQ(store->installError(),
              ".claude/settings.json isn't valid JSON, so Kippo left it alone. Fix it and try again.");
    EXPECT_TRUE(store->connected().empty());
    userFiles.files[settings] = "{}";
    store->connect(HookAgent::claude);
    EXPECT_FALSE(store->installError());
    EXPECT_EQ(store->connected(), std::set{HookAgent::claude});
    EXPECT_TRUE(store->lastEventByAgent().empty()) << "proves nothing before an event has arrived";
    EXPECT_EQ(store->plannedConnection(HookAgent::claude, false)->after, "{}");

    // Somebody edits the file while the page is shut.
    told = 0;
    userFiles.files[settings] = "{}";
    store->setVisible(true);
    EXPECT_TRUE(store->connected().empty());
    EXPECT_GE(told, 1);

    userFiles.full.insert(instructions);
    store->setSummaryInstructions(HookAgent::claude, true);
    EXPECT_TRUE(store->summaryInstructions().empty());
    EXPECT_EQ(store->installError(),
              ".claude/CLAUDE.md can't be written, so it stays as it was: No space left on device.");
    userFiles.full.clear();
    store->setSummaryInstructions(HookAgent::claude, true);
    EXPECT_EQ(store->summaryInstructions(), std::set{HookAgent::claude});

    // Hooks of an earlier place are led to an installed program, by the application only.
    store->connect(HookAgent::claude);
    const auto old = commands();
    executable = "/new/kippo";
    makeStore()->start();
    isInstalled = true;
    makeStore(AgentStore::Role::onlooker)->start();
    EXPECT_EQ(commands(), old);
    const auto moved = makeStore();
    moved->start();
    EXPECT_TRUE(commands()->begin()->second[0].contains("/new/kippo"));
    EXPECT_EQ(moved->connected(), std::set{HookAgent::claude});
}

TEST_F(AgentStoreTest, ShowsTheListBeforeUsageIsCounted) {
    const std::string transcript = home.path(".claude/projects/-p/s.jsonl");
    home.write(transcript, samples::Reply{.date = scheduler.now(), .session = "s"}.line());
    home.age(transcript, scheduler.now());
    event("UserPromptSubmit");
    HeldQueue slow;
    scans = &slow;
    int told = 0;
    auto store = makeStore();
    store->start();
    EXPECT_EQ(status(*store), "working");
    EXPECT_FALSE(store->hasUsage());
    store->scanLeftovers();
    EXPECT_TRUE(store->isScanningLeftovers());
    scheduler.advance(Seconds{120});
    EXPECT_EQ(slow.waiting.size(), 1U) << "one scan at a time";
    slow.runAll();
    EXPECT_EQ(store->usage().tokens, 10);
    EXPECT_EQ(store->sessions()[0].tokensToday, 10);
    EXPECT_GT(store->sessions()[0].costToday, 0);
    EXPECT_TRUE(store->hasScannedLeftovers()) << "with the folders that usage tells of";

    const auto subscription = store->observe([&told] { ++told; });
    store->refreshUsage();
    slow.runAll();
    EXPECT_EQ(told, 0) << "nothing new";
    home.append(transcript, samples::Reply{.id = "2", .date = scheduler.now(), .session = "s"}.line());
    store->refreshUsage();
    slow.runAll();
    EXPECT_EQ(store->sessions()[0].tokensToday, 20);
    store->refreshUsage();
    store.reset();
    slow.runAll();
}

TEST_F(AgentStoreTest, MovesLeftoversToTheTrashAndBack) {
    const auto big = home.path("p/node_modules"), small = home.path("p/dist");
    for (const auto& [folder, kb] : {std::pair{big, "50000"}, std::pair{small, "20000"}}) {
        home.write(folder + "/x", "");
        runner.outputs["/usr/bin/du -sk " + folder] = std::string{kb} + "\t" + folder + "\n";
        trash.places.insert(folder);
    }
    event("UserPromptSubmit", fmt::format(R"(,"c":"{}")", home.path("p")));
    const auto store = makeStore();
    const auto paths = [&store] { return each(store->leftovers(), &Leftover::path); };
    using Paths = std::vector<std::string>;
    store->start();
    EXPECT_FALSE(store->hasScannedLeftovers());
    store->scanLeftovers();
    ASSERT_EQ(paths(), (Paths{big, small}));

    const Leftover first = store->leftovers()[0];
    trash.refusal = "No room.";
    store->trash(first);
    EXPECT_EQ(store->trashError(), "No room.");
    EXPECT_EQ(paths(), (Paths{big, small}));
    trash.refusal.reset();
    store->trash(first);
    store->trash(first); // a second click
    EXPECT_FALSE(store->trashError());
    EXPECT_EQ(paths(), Paths{small});
    EXPECT_EQ(store->lastTrashed(), first);

    trash.refusal = "Not now.";
    store->undoTrash();
    EXPECT_EQ(store->trashError(), "Not now.");
    EXPECT_EQ(store->lastTrashed(), first);
    trash.refusal.reset();
    store->undoTrash();
    EXPECT_EQ(paths(), (Paths{big, small}));
    EXPECT_FALSE(store->lastTrashed());
    EXPECT_TRUE(trash.contents.empty());
}

TEST_F(AgentStoreTest, AnOnlookerWritesNothing) {
    event("UserPromptSubmit");
    const auto store = makeStore(AgentStore::Role::onlooker);
    store->refreshOnce();
    EXPECT_EQ(store->workingCount(), 1);
    EXPECT_TRUE(defaults.values.empty());
}

TEST_F(AgentStoreTest, RunsOneScanOfEachKindAtATimeAndMayDieBeforeItEnds) {
    HeldQueue held;
    work = &held;
    auto store = makeStore();
    store->setVisible(true);
    store->start();
    scheduler.advance(Seconds{30});
    EXPECT_EQ(held.waiting.size(), 2U); // one poll, one scan
    held.runAll();
    EXPECT_EQ(processes.listings, 1);
    scheduler.advance(Seconds{3});
    store.reset();
    held.runAll(); // what was under way ends without it
    EXPECT_EQ(processes.listings, 2);
}

} // namespace kippo
