#include "Agents/HookState.h"

#include "Agents/StatusNormalizer.h"
#include "Agents/TranscriptWatcher.h"

namespace kippo {

namespace {

/// What Gemini CLI reports in place of a reply after a turn that failed.
constexpr std::string_view noReply = "[no response text]";

/// Whether the agents' name for a tool event says that the call has returned.
bool reportsFinishedTool(std::string_view name) {
    return name.starts_with("Post") || name.starts_with("post") || name.starts_with("After") ||
           name.starts_with("after");
}

bool isReminder(const HookBridge::Event& event, HookMeaning meaning) {
    return meaning == HookMeaning::notification && (event.kind == "idle_prompt" || event.kind == "agent_completed");
}

} // namespace

void HookState::apply(const HookBridge::Event& event) {
    const HookMeaning what = meaning(event.judgedBy(), event.name);
    agent = event.judgedBy();
    if (event.source) {
        source = event.source;
    }
    if (firstHeard == Date{}) {
        firstHeard = event.time;
    }
    time = event.time;
    applyStatus(event, what);
    keepFacts(event, what);
    if (what == HookMeaning::sessionEnd) {
        ended = true;
    } else {
        // One agent reports its failure after its end; that brings a word about the session, not the session back.
        ended = ended && what != HookMeaning::sessionStart && what != HookMeaning::promptSubmit &&
                what != HookMeaning::toolUse;
        news = isReminder(event, what) ? news : event.time;
    }
}

void HookState::applyStatus(const HookBridge::Event& event, HookMeaning what) {
    const auto next = StatusNormalizer::afterHook(event, what, status);
    if (!next || (isReminder(event, what) && status == next)) {
        return;
    }
    // A request repeats itself as a vaguer notification some seconds later; it is still the same wait.
    const bool sameWait = what == HookMeaning::notification && status && status->isNeedsYou() && next->isNeedsYou();
    if (!sameWait) {
        approval.reset();
    }
    if (what == HookMeaning::permissionRequest) {
        approval = next->sentence;
    } else if (event.kind == "ToolPermission" && activity && !activity->finished) {
        // Gemini CLI's own words for it are its code's; the call that asks has just been told of.
        approval = StatusNormalizer::approval(activity->tool);
    }
    wait = !next->isNeedsYou()                                             ? Wait::none
           : what == HookMeaning::stop || what == HookMeaning::stopFailure ? Wait::failure
                                                                           : Wait::permission;
    status = next;
    asserted = event.time;
}

void HookState::keepFacts(const HookBridge::Event& event, HookMeaning what) {
    if (event.cwd && !event.cwd->empty()) {
        cwd = event.cwd;
        firstCwd = firstCwd ? firstCwd : cwd;
    }
    if (what == HookMeaning::promptSubmit) {
        promptTime = event.time;
        activity.reset();
        marker.reset();
    }
    if (event.prompt && what != HookMeaning::stop) {
        prompt = TranscriptWatcher::oneLine(*event.prompt);
    }
    if (event.tool && !event.tool->empty()) {
        activity = AgentActivity{.kind = AgentActivity::kindOf(*event.tool),
                                 .tool = *event.tool,
                                 .detail = event.detail,
                                 .finished = reportsFinishedTool(event.name),
                                 .time = event.time};
    }
    if (event.reply && event.reply != noReply) {
        summary = TranscriptWatcher::summary(*event.reply);
        marker = TranscriptWatcher::needsYouMarker(*event.reply);
    }
    if (activity && (what == HookMeaning::stop || what == HookMeaning::stopFailure)) {
        activity->finished = true;
    }
}

} // namespace kippo
