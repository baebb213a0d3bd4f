#include "Agents/AgentStore.h"
#include "Agents/AgentSuggestions.h"

#include <algorithm>
#include <utility>

/// What is looked up rather than reported: transcripts, the registry, the process table, usage.
namespace kippo {

namespace {

/// A session that has just turned up asks for its process at once, but not more often than this.
constexpr Seconds processGap{2.0};
/// News of a session this young may come before its transcript is found.
constexpr Seconds newlyHeard{10.0};
/// While a call stands open the processes are looked at more often, from and until so long after it began.
constexpr Seconds openCallFrom{3.0};
constexpr Seconds openCallUntil{9.0};

/// Whether the agent's transcripts are among those that TranscriptWatcher follows.
bool writesTranscripts(const HookState& hook) { return hook.agent != HookAgent::cursor; }

/// What one poll of transcripts and registry brings home from the work queue.
struct Poll {
    std::vector<TranscriptWatcher::State> states;
    std::vector<RegistryEntry> registry;
    std::vector<std::string> files;
};

} // namespace

// MARK: transcripts and registry

void AgentStore::pollTranscripts() {
    if (pollingTranscripts_) {
        pollAgain_ = true;
        return;
    }
    pollingTranscripts_ = true;
    const Date now = ports_.scheduler.now();
    // The registry names a session, and what it asks, before the folders are walked again.
    const bool newlyRegistered = std::ranges::any_of(registry_, [&](const RegistryEntry& entry) {
        return !transcripts_.contains(entry.session) && entry.statusUpdatedAt > now - newlyHeard;
    });
    const bool unknownSession = std::ranges::any_of(hookStates_, [this](const auto& entry) {
        return writesTranscripts(entry.second) && entry.second.status == AgentStatus::working() &&
               !transcripts_.contains(entry.first);
    });
    const auto poll = std::make_shared<Poll>();
    ports_.work.run(
        [readers = readers_, poll, now, isNew = unknownSession || newlyRegistered] {
            if (isNew) {
                readers->transcripts.discoverSoon();
            }
            poll->states = readers->transcripts.poll(now);
            poll->registry = readers->registry.poll();
            poll->files = readers->transcripts.watchedPaths();
        },
        [this, poll, alive = std::weak_ptr(alive_)] {
            if (alive.expired()) {
                return;
            }
            pollingTranscripts_ = false;
            transcripts_.clear();
            for (auto& state : poll->states) {
                const auto [entry, isNew] = transcripts_.try_emplace(state.session, state);
                if (!isNew && entry->second.lastActivity < state.lastActivity) {
                    entry->second = std::move(state);
                }
            }
            registry_ = std::move(poll->registry);
            watchFiles(std::move(poll->files));
            merge();
            if (hasOpenCall(ports_.scheduler.now())) {
                refreshProcessesUnlessRecent();
            }
            if (std::exchange(pollAgain_, false)) {
                pollTranscripts();
            }
        });
}

/// Watches the event log, the transcripts and the registry's entries.
void AgentStore::watchFiles(std::vector<std::string> transcripts) {
    if (!ports_.files) {
        return;
    }
    std::vector<std::string> files = std::move(transcripts);
    files.push_back(eventLog_.path());
    for (const RegistryEntry& entry : registry_) {
        files.push_back(places_.home + "/.claude/sessions/" + std::to_string(entry.pid) + ".json");
    }
    if (files != watchedFiles_) {
        watchedFiles_ = files;
        ports_.files->watch(std::move(files));
    }
}

void AgentStore::onFileChanged(const std::string& path) {
    if (path == eventLog_.path()) {
        readEvents(false);
    } else {
        pollTranscripts();
    }
}

// MARK: processes and usage

void AgentStore::refreshProcesses() {
    if (scanningProcesses_) {
        return;
    }
    scanningProcesses_ = true;
    processesAskedAt_ = ports_.scheduler.now();
    const auto result = std::make_shared<ProcessScanner::Snapshot>();
    ports_.work.run([&processes = ports_.processes, result,
                     watch = preferences_.watchedNames()] { *result = ProcessScanner::snapshot(processes, watch); },
                    [this, result, taken = processesAskedAt_, alive = std::weak_ptr(alive_)] {
                        if (alive.expired()) {
                            return;
                        }
                        scanningProcesses_ = false;
                        lastSnapshot_ = result;
                        snapshotTime_ = taken;
                        const auto before = std::exchange(suggestions_, agentSuggestions(*result, preferences_));
                        merge(suggestions_ != before);
                        if (std::exchange(scanAgain_, false)) {
                            refreshProcesses();
                        }
                    });
}

void AgentStore::refreshProcessesAnew() {
    scanAgain_ = scanningProcesses_;
    refreshProcesses();
}

bool AgentStore::hasOpenCall(Date now) const {
    return std::ranges::any_of(transcripts_, [&](const auto& entry) {
        const auto& call = entry.second.openCall;
        return call && now > call->since + openCallFrom && processesAskedAt_ < call->since + openCallUntil;
    });
}

void AgentStore::refreshProcessesUnlessRecent() {
    if (ports_.scheduler.now() > processesAskedAt_ + processGap) {
        refreshProcesses();
    }
}

void AgentStore::refreshUsage() {
    if (scanningUsage_) {
        return;
    }
    scanningUsage_ = true;
    usageAskedAt_ = ports_.scheduler.now();
    const auto report = std::make_shared<UsageScanner::Report>();
    ports_.scans.run([scanner = usageScanner_, report, now = usageAskedAt_] { *report = scanner->refresh(now); },
                     [this, report, alive = std::weak_ptr(alive_)] {
                         if (alive.expired()) {
                             return;
                         }
                         scanningUsage_ = false;
                         if (!std::exchange(hasUsage_, true) || *report != usageReport_) {
                             usageReport_ = std::move(*report);
                             merge(true);
                         }
                         if (std::exchange(leftoversWanted_, false)) {
                             scanLeftovers();
                         }
                     });
}

void AgentStore::scanLeftovers() {
    if (!hasUsage_ && scanningUsage_) {
        leftoversWanted_ = true;
        tell();
        return;
    }
    std::set<std::string> projects = usageReport_.projects;
    if (!demoSessions_) {
        for (const AgentSession& session : sessions_) {
            projects.insert(session.cwd.value_or(std::string{}));
        }
    }
    // An agent that worked in the home folder does not make that a project.
    projects.erase(places_.home);
    projects.erase(std::string{});
    leftovers_.scan(std::move(projects));
}

} // namespace kippo
