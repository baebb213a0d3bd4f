#include "Agents/SessionFacts.h"
#include "Agents/StatusNormalizer.h"

#include "Support/Text.h"

#include <algorithm>

namespace kippo::SessionMerge {

namespace {

using Phase = TranscriptWatcher::State::Phase::Case;
using Registry = RegistryEntry::Status;

/// How long the registry may contradict a newer hook before it is believed: it is written a moment after the hook ran.
constexpr Seconds contradiction{2.0};
/// Clocks of hook and transcript are read at slightly different moments of the same event.
constexpr Seconds sameMoment{0.25};
/// After this much silence a turn that nobody ended is no longer taken for work.
constexpr Seconds silence{600.0};
/// A process tree below this is not busy, in percent of one core.
constexpr double restingCpu = 4;
/// A call that runs, or answers by itself, has shown it after this long.
constexpr Seconds callPatience{3.0};
/// By how much the start of a command may seem to lie before its call was written down.
constexpr Seconds startJitter{0.3};

/// The status that the hooks, or else the transcript, give alone; the others then overrule it.
struct Claim {
    AgentStatus status;
    Date asserted;
    bool permission = false; ///< waits for a permission, which may be granted or declined without a word
};

bool turnEnded(const TranscriptWatcher::State& transcript) {
    return transcript.phase.value == Phase::done || transcript.pendingDone;
}

AgentStatus statusOf(const TranscriptWatcher::State& transcript, bool gone) {
    if (transcript.failure) {
        return AgentStatus::needsYou("Stopped: " + *transcript.failure);
    }
    switch (transcript.phase.value) {
    case Phase::needsYou:
        return AgentStatus::needsYou(transcript.phase.sentence);
    case Phase::working:
        if (gone && transcript.pendingDone) {
            return transcript.markerNeedsYou ? AgentStatus::needsYou(*transcript.markerNeedsYou) : AgentStatus::done();
        }
        return AgentStatus::working();
    case Phase::done:
        return AgentStatus::done();
    case Phase::interrupted:
        return AgentStatus::idle();
    }
    return AgentStatus::idle();
}

/// The transcript's last reply is the one that ended the turn the hooks last told of.
bool isOfSameTurn(const HookState& hook, const TranscriptWatcher::State& transcript) {
    return transcript.phaseSince + sameMoment >= hook.promptTime.value_or(hook.firstHeard);
}

/// The "Needs you:" text of the reply that ended the turn. The transcript's is whole, the hook's may have been cut off.
std::optional<std::string> question(const Facts& facts) {
    if (facts.hook && (!facts.transcript || !isOfSameTurn(*facts.hook, *facts.transcript))) {
        return facts.hook->marker;
    }
    if (facts.transcript && facts.transcript->markerNeedsYou) {
        return facts.transcript->markerNeedsYou;
    }
    return facts.hook ? facts.hook->marker : std::nullopt;
}

Claim hookClaim(const HookState& hook) {
    Claim claim{
        .status = *hook.status, .asserted = hook.asserted, .permission = hook.wait == HookState::Wait::permission};
    if (claim.permission && hook.approval) {
        claim.status.sentence = *hook.approval;
    }
    return claim;
}

bool asksTheUser(const HookState& hook) {
    if (!hook.activity || hook.activity->finished) {
        return false;
    }
    const std::string tool = Text::lowered(hook.activity->tool);
    return tool == "askuserquestion" || tool == "exitplanmode";
}

/// A child that was started after `moment`, and not just now, is a command that runs.
bool childStartedSince(const Facts& facts, const Input& input, Date moment) {
    if (!facts.pid) {
        return false;
    }
    const auto startedBelow = [&](Pid root) {
        return std::ranges::any_of(ProcessScanner::descendants(root, *input.snapshot), [&](const ProcInfo& child) {
            // Hooks and status lines come and go; a command that matters is still there after a second.
            return startOf(child, input) > moment && child.uptime > 1.5 && !classify(child.command, {});
        });
    };
    if (startedBelow(*facts.pid)) {
        return true;
    }
    // The first of Codex's terminals starts a server that runs the commands of all of them.
    return facts.kind == AgentKind::codex && std::ranges::any_of(input.snapshot->procs, [&](const auto& entry) {
               const std::string& command = entry.second.command;
               return command.contains("codex app-server") && startedBelow(entry.first);
           });
}

/// The transcript left a call open, and nothing shows that it runs [S17].
bool standsAtQuestion(const Facts& facts, const Input& input) {
    const auto& call = facts.transcript->openCall;
    const bool headless =
        facts.transcript->interactive == false || (facts.kind == AgentKind::gemini && !facts.attended);
    if (!call || call->sentence.empty() || !facts.pid || headless || input.snapshotTime < call->since + callPatience ||
        childStartedSince(facts, input, call->since - startJitter)) {
        return false;
    }
    return facts.kind != AgentKind::gemini || facts.cpu < restingCpu;
}

/// What the process table makes of the transcript's word, where nothing else speaks.
void overruleByProcesses(Claim& claim, const Facts& facts, const Input& input) {
    const auto& call = facts.transcript->openCall;
    if (claim.status.isWorking() && standsAtQuestion(facts, input)) {
        claim = {.status = AgentStatus::needsYou(call->sentence), .asserted = call->since, .permission = true};
    } else if (claim.status.isDone() && call && childStartedSince(facts, input, call->since - startJitter)) { // [S18]
        claim = {.status = AgentStatus::working(), .asserted = call->since};
    }
}

/// What the transcript makes of the hooks' word [S6 to S11, S19].
void overruleByTranscript(Claim& claim, const Facts& facts) {
    const auto& transcript = *facts.transcript;
    const bool newer = transcript.phaseSince > claim.asserted + sameMoment;
    const bool notOlder = transcript.phaseSince + sameMoment >= claim.asserted;
    const auto follow = [&] { claim = {.status = statusOf(transcript, false), .asserted = transcript.phaseSince}; };
    if (transcript.phase.value == Phase::interrupted) {
        if (notOlder) {
            follow();
        }
    } else if (transcript.phase.value == Phase::needsYou && claim.status.isWorking()) {
        if (notOlder || asksTheUser(*facts.hook)) {
            follow();
        }
    } else if (claim.permission) {
        if (newer) {
            follow();
        }
    } else if (claim.status.isWorking()) {
        const bool ended = transcript.phase.value == Phase::done && !transcript.openCall;
        if (notOlder && (ended || transcript.failure)) {
            follow();
        }
    } else if (!claim.status.isNeedsYou()) {
        const bool failed = claim.status.isDone() && transcript.failure && isOfSameTurn(*facts.hook, transcript);
        const bool wentOn = newer && transcript.phase.value == Phase::working && !transcript.pendingDone;
        if (failed || wentOn) {
            follow();
        }
    }
}

std::string waitingSentence(const Facts& facts) {
    if (facts.hook && facts.hook->approval) {
        return *facts.hook->approval;
    }
    const bool permission = facts.registry->waitingFor && facts.registry->waitingFor->contains("permission");
    const auto& activity = facts.hook && facts.hook->activity ? facts.hook->activity
                           : facts.transcript                 ? facts.transcript->activity
                                                              : std::nullopt;
    if (permission && activity && !activity->finished) {
        return StatusNormalizer::approval(activity->tool);
    }
    return permission ? StatusNormalizer::approval(std::nullopt) : "Waiting for you";
}

/// What the registry makes of it [S1 to S5]. It tells what is so now, not what happened.
void overruleByRegistry(Claim& claim, const Facts& facts, const Input& input) {
    const Date since = facts.registry->statusUpdatedAt.value_or(distantPast);
    const bool newer = since > claim.asserted;
    const bool insists = newer || input.now > claim.asserted + contradiction;
    const auto set = [&](AgentStatus status) {
        claim = {.status = std::move(status), .asserted = newer ? since : claim.asserted, .permission = false};
    };
    switch (facts.registry->status) {
    case Registry::waiting:
        if (!claim.status.isNeedsYou() && insists) {
            set(AgentStatus::needsYou(waitingSentence(facts)));
            claim.permission = true;
        }
        break;
    case Registry::busy:
        if (newer && !claim.status.isWorking() && (!claim.status.isNeedsYou() || claim.permission)) {
            set(AgentStatus::working());
        }
        break;
    case Registry::idle:
        if ((claim.permission && newer) || (claim.status.isWorking() && insists)) {
            const bool ended = facts.transcript && turnEnded(*facts.transcript) &&
                               (!facts.hook || isOfSameTurn(*facts.hook, *facts.transcript));
            set(ended ? AgentStatus::done() : AgentStatus::idle());
        }
        break;
    case Registry::unknown:
        break;
    }
}

Claim firstClaim(const Facts& facts) {
    if (facts.hook && facts.hook->status) {
        Claim claim = hookClaim(*facts.hook);
        if (facts.transcript) {
            overruleByTranscript(claim, facts);
        }
        return claim;
    }
    if (facts.transcript) { // [S14]
        return {.status = statusOf(*facts.transcript, false), .asserted = facts.transcript->phaseSince};
    }
    return {.status = AgentStatus::idle(), .asserted = facts.lastHeard()}; // [S15]
}

Verdict judgePresent(const Facts& facts, const Input& input) {
    Claim claim = firstClaim(facts);
    if (facts.registry) {
        overruleByRegistry(claim, facts, input);
    } else if (claim.permission && facts.hook && facts.hook->activity &&
               facts.hook->activity->kind == AgentActivity::Kind::shell &&
               childStartedSince(facts, input, claim.asserted + Seconds{0.5})) { // [S9]
        claim = {.status = AgentStatus::working(), .asserted = claim.asserted};
    }
    const bool registryTells = facts.registry && facts.registry->status != Registry::unknown;
    if (facts.transcript && !registryTells && !(facts.hook && facts.hook->status)) {
        overruleByProcesses(claim, facts, input);
    }
    if (claim.status.isDone()) { // [S12]
        if (const auto text = question(facts)) {
            claim.status = AgentStatus::needsYou(*text);
        }
    }
    const auto& activity = facts.hook && facts.hook->activity ? facts.hook->activity
                           : facts.transcript                 ? facts.transcript->activity
                                                              : std::nullopt;
    const bool toolRuns = facts.pid && activity && !activity->finished;
    if (claim.status.isWorking() && !registryTells && !toolRuns && input.now > facts.lastHeard() + silence &&
        facts.cpu < restingCpu) { // [S13]
        claim.status = AgentStatus::idle();
    }
    return {.status = claim.status, .since = claim.asserted, .midTurn = claim.permission};
}

Verdict judgeGone(const Facts& facts) {
    const HookState* hook = facts.hook && facts.hook->status ? facts.hook : nullptr;
    const auto* transcript = facts.transcript;
    if (hook && hook->wait == HookState::Wait::failure) { // [G2]
        return {.status = *hook->status, .since = hook->asserted};
    }
    const bool transcriptEnded = transcript && turnEnded(*transcript) && (!hook || isOfSameTurn(*hook, *transcript));
    const Date since = hook && (!transcript || hook->asserted > transcript->phaseSince) ? hook->asserted
                       : transcript                                                     ? transcript->phaseSince
                                                                                        : facts.lastHeard();
    if (transcript && transcript->failure && (!hook || isOfSameTurn(*hook, *transcript))) { // [G2]
        return {.status = statusOf(*transcript, true), .since = since};
    }
    const bool asked = transcript && transcript->phase.value == Phase::needsYou && transcript->markerNeedsYou;
    if ((hook && hook->status->isDone()) || transcriptEnded || asked) { // [G1, G3]
        const auto text = question(facts);
        return {.status = text && !facts.attended ? AgentStatus::needsYou(*text) : AgentStatus::done(), .since = since};
    }
    return {.status = AgentStatus::idle(), .since = since}; // [G4]
}

} // namespace

Verdict judge(const Facts& facts, const Input& input) {
    return facts.presence == Facts::Presence::gone ? judgeGone(facts) : judgePresent(facts, input);
}

} // namespace kippo::SessionMerge
