#pragma once

#include "Agents/AgentConnections.h"
#include "Agents/AgentPreferences.h"
#include "Agents/EventLog.h"
#include "Agents/LeftoverList.h"
#include "Agents/LiveSummary.h"
#include "Agents/SessionMerge.h"
#include "Agents/UsageScanner.h"
#include "Support/FileWatcher.h"
#include "Support/Observers.h"
#include "Support/Places.h"
#include "Support/ProcessRunner.h"
#include "Support/Scheduler.h"
#include "Support/SerialQueue.h"
#include "Support/Trash.h"
#include "Support/UserDefaults.h"
#include "Support/UserFiles.h"

#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace kippo {

/// The single owner of what is known about running agent sessions: it reads the event log, polls transcripts, the
/// session registry and the process table, and merges them into one list. Lives on the main queue; its slow work runs
/// on `work`.
class AgentStore {
public:
    /// What the store stands on. All of it must outlive the store.
    struct Ports {
        Scheduler& scheduler;
        UserDefaults& defaults;
        SerialQueue& work;
        SerialQueue& scans;       ///< for what may take minutes (usage, leftovers), so that the list never waits for it
        ProcessLister& processes; ///< used on `work` only, and must outlive that too
        FileWatcher* files;       ///< may be nothing: then only the timers wake the store
        UserFiles& userFiles;
        ProcessRunner& runner;    ///< used on `scans` only, and must outlive that too
        Trash& trash;             ///< likewise
        std::string executable;   ///< the program that hooks are to run
        bool isInstalled = false; ///< `executable` is there to stay: hooks of an earlier place may be led to it
    };

    /// Whether the store looks after the user's files. A terminal command only looks at them.
    enum class Role { keeper, onlooker };

    /// For this long after its creation a store takes what it finds as given and raises no alert.
    static constexpr Seconds alertGrace{3.0};
    /// Turns up to this long finish without an alert.
    static constexpr Seconds shortTurn{20.0};
    /// Events older than this are not applied.
    static constexpr Seconds oldestEvent{43200.0};

    AgentStore(Places places, Ports ports, Role role = Role::keeper);
    ~AgentStore();
    AgentStore(const AgentStore&) = delete;
    AgentStore& operator=(const AgentStore&) = delete;

    const std::vector<AgentSession>& sessions() const { return sessions_; }
    const std::vector<DetachedProcess>& detached() const { return detached_; }
    /// When each agent's hooks were last heard of; says whether they have ever worked.
    const std::map<HookAgent, Date>& lastEventByAgent() const { return lastEventByAgent_; }
    std::optional<Date> lastEventAt() const { return lastEventAt_; }
    /// Raw values of the agent kinds that the user does not want to see.
    const std::set<std::string>& hidden() const { return preferences_.hidden(); }
    /// Program names that count as agents by the user's wish.
    const std::vector<std::string>& watchedNames() const { return preferences_.watchedNames(); }
    const std::vector<std::string>& hiddenProcesses() const { return preferences_.hiddenProcesses(); }

    int workingCount() const;
    int needsYouCount() const;
    /// Nothing when no session works or needs the user.
    std::optional<LiveSummary> liveSummary() const { return kippo::liveSummary(sessions_); }

    /// A session came to need the user, or finished a turn of more than `shortTurn`.
    std::function<void(const AgentSession&)> onAlert;
    /// After each change of what the store shows.
    std::function<void()> onChange;
    /// As `onChange`, for any number of views.
    [[nodiscard]] Subscription observe(std::function<void()> callback) { return observers_.add(std::move(callback)); }

    /// Reads everything once and starts the timers.
    void start();
    /// Reads everything once, without timers: for a command that prints the list and ends. With a queue that runs its
    /// work at once the list is complete on return.
    void refreshOnce();
    /// True while the agents' page is on screen: processes are then scanned every 3 s rather than every 15 s.
    void setVisible(bool visible);
    bool isVisible() const { return isVisible_; }

    void refreshProcesses();
    void refreshUsage();
    void pollTranscripts();
    void readEvents(bool initial);

    /// Takes a session off the list until it does something new.
    void dismiss(const AgentSession& session);
    /// The sessions that are over: their turn is done, or their process has ended.
    std::vector<AgentSession> clearable() const;
    /// Takes all of them off the list until they do something new.
    void clearFinishedAndOrphaned();
    /// Hides or shows all sessions of a kind.
    void setVisible(AgentKind kind, bool visible);
    bool isHidden(AgentKind kind) const;

    /// Whether a kind's sessions count in the lights of the closed notch.
    void setLights(AgentKind kind, bool on);
    bool drivesLights(AgentKind kind) const;
    const std::set<std::string>& lightsOff() const { return preferences_.lightsOff(); }
    /// What the closed notch shows: the sessions of the kinds whose lights are on. Nothing when none works or waits.
    std::optional<LiveSummary> statusLights() const;

    /// Today's usage; the rest of it is in `usageReport`.
    const UsageScanner::Totals& usage() const { return usageReport_.today; }
    const UsageScanner::Report& usageReport() const { return usageReport_; }
    /// False until the first scan has ended, which may take a while over gigabytes.
    bool hasUsage() const { return hasUsage_; }

    /// The agents whose hooks are installed.
    const std::set<HookAgent>& connected() const { return connections_.connected(); }
    /// Reads the settings files again; somebody may have edited them.
    void refreshConnections();
    /// Installs or removes the hooks; on failure `installError` says why, and `connected` stays true to the files.
    void connect(HookAgent agent);
    void disconnect(HookAgent agent);
    const std::optional<std::string>& installError() const { return connections_.error(); }
    void clearInstallError();
    /// What `connect` or `disconnect` would do to the agent's file.
    std::expected<HookBridge::Change, HookBridge::InstallError> plannedConnection(HookAgent agent, bool connect) const {
        return connections_.planned(agent, connect);
    }
    /// The text for an AI that edits the file in Kippo's place.
    std::string setupPrompt(HookAgent agent) const { return connections_.setupPrompt(agent); }
    /// The agents whose instruction file holds Kippo's block.
    const std::set<HookAgent>& summaryInstructions() const { return connections_.summaryInstructions(); }
    /// Installs or removes the block; on failure the set stays as it was and `installError` says why.
    void setSummaryInstructions(HookAgent agent, bool on);

    /// Follows programs of this name as agents; white space around it is dropped, an empty name is none.
    void watch(const std::string& name);
    void unwatch(const std::string& name);
    /// Programs that run now, are known to be coding agents, and are not followed yet nor declined.
    const std::vector<std::string>& suggestions() const { return suggestions_; }
    void dismissSuggestion(const std::string& name);
    const std::set<std::string>& dismissedSuggestions() const { return preferences_.dismissedSuggestions(); }

    /// Leaves processes of this name (`ProcInfo::friendlyName`) out of `detached`.
    void hideProcess(const std::string& named);
    void unhideProcess(const std::string& named);
    /// Asks a process and everything below it to end; only processes of the last snapshot.
    void stop(Pid pid);
    void stopAllDetached();

    /// Looks for leftovers in every folder that agents worked in, in the background; after the first scan of usage,
    /// which tells of most of them.
    void scanLeftovers();
    const std::vector<Leftover>& leftovers() const { return leftovers_.list(); }
    bool isScanningLeftovers() const { return leftoversWanted_ || leftovers_.isScanning(); }
    /// Whether a scan has ended since the start; until then an empty list means nothing.
    bool hasScannedLeftovers() const { return leftovers_.hasScanned(); }
    /// Moves one to the Trash in the background. When that fails it stays in the list and `trashError` says why.
    void trash(const Leftover& leftover) { leftovers_.trash(leftover); }
    /// The latest one that was moved, until another takes its place.
    const std::optional<Leftover>& lastTrashed() const { return leftovers_.lastTrashed(); }
    /// Puts that one back.
    void undoTrash() { leftovers_.undo(); }
    const std::optional<std::string>& trashError() const { return leftovers_.error(); }

    /// Shows these sessions, by id, in place of the real ones, which go on unseen and still raise their alerts. The
    /// samples raise none.
    void injectDemo(std::map<std::string, AgentSession> sessions);
    void clearDemo();

private:
    /// What reads transcripts and registry, on the work queue only. Work under way keeps it.
    struct Readers {
        explicit Readers(const std::string& home) : transcripts(home), registry(home) {}
        TranscriptWatcher transcripts;
        SessionRegistryReader registry;
    };

    /// Repairs the hooks and learns who is connected.
    void checkConnections();
    /// Transcripts, processes and, for a keeper, usage.
    void lookAround();
    void onTick();
    void apply(const HookBridge::Event& event);
    void noteAgentHeard(const HookBridge::Event& event);
    void persistLastEvents();
    void onFileChanged(const std::string& path);
    void watchFiles(std::vector<std::string> transcripts);
    /// Rebuilds the list. The observers are told when it changed, or when there is `otherNews` anyway.
    void merge(bool otherNews = false);
    void addUsage(std::vector<AgentSession>& sessions) const;
    void tell();
    /// What the user is to be told of a list; remembers it for the next. Takes the real sessions, also behind a demo.
    std::vector<AgentSession> takeAlerts(const std::vector<AgentSession>& sessions, Date now);
    bool isWorthAnAlert(const AgentSession& session, const AgentStatus& before, Date now) const;
    void readDefaults();
    void refreshProcessesUnlessRecent();
    /// Whether a transcript left a call open of which a fresh process table would tell more.
    bool hasOpenCall(Date now) const;
    /// As `refreshProcesses`, and once more after a scan that is under way: the table is known to have changed.
    void refreshProcessesAnew();
    void stop(std::vector<Pid> pids);
    void forgetOldHooks(Date now);

    Places places_;
    Ports ports_;
    Role role_;
    Observers observers_;
    /// Results of slow work that come back after the store is gone find this gone too. The work itself knows nothing of
    /// the store, for it may run on another thread while the store ends.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);

    std::vector<AgentSession> sessions_;
    std::vector<DetachedProcess> detached_;
    std::map<std::string, HookState> hookStates_;
    std::shared_ptr<Readers> readers_;
    std::map<std::string, TranscriptWatcher::State> transcripts_;
    std::vector<RegistryEntry> registry_;
    std::shared_ptr<const ProcessScanner::Snapshot> lastSnapshot_; ///< nothing before the first scan
    Date snapshotTime_ = distantPast;
    SessionMerge::Memory memory_;

    EventLog eventLog_;
    std::map<std::string, AgentStatus> previousStatus_;
    Date alertsArmAt_;
    std::map<HookAgent, Date> lastEventByAgent_;
    Date lastEventsPersistedAt_ = distantPast;
    std::optional<Date> lastEventAt_;

    std::set<std::string> gone_; ///< sessions whose process has ended
    std::map<std::string, Date> dismissedAt_;
    std::map<std::string, Date> clearedAt_;
    AgentPreferences preferences_;
    std::vector<std::string> suggestions_;

    AgentConnections connections_;
    std::shared_ptr<UsageScanner> usageScanner_; ///< used on `scans` only; a scan under way keeps it
    UsageScanner::Report usageReport_;
    bool hasUsage_ = false;
    bool scanningUsage_ = false;
    Date usageAskedAt_ = distantPast;
    LeftoverList leftovers_;
    bool leftoversWanted_ = false;                          ///< as soon as usage is known
    std::optional<std::vector<AgentSession>> demoSessions_; ///< in list order

    bool isVisible_ = false;
    bool pollingTranscripts_ = false;
    bool pollAgain_ = false; ///< something changed while a poll was under way
    bool scanningProcesses_ = false;
    bool scanAgain_ = false; ///< the scan under way comes too early for what is wanted
    Date processesAskedAt_ = distantPast;
    int tick_ = 0;
    std::vector<std::string> watchedFiles_;
    std::vector<Timer> timers_;
    Timer afterStop_;
    Subscription defaultsSubscription_;
};

} // namespace kippo
