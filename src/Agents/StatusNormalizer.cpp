#include "Agents/StatusNormalizer.h"

#include "Support/Text.h"

namespace kippo::StatusNormalizer {

namespace {

std::optional<AgentStatus> afterNotification(const HookBridge::Event& event, const std::optional<AgentStatus>& before) {
    const std::string kind = event.kind.value_or("");
    const auto waiting = [&] {
        return AgentStatus::needsYou(event.message ? plain(*event.message) : "Waiting for you");
    };
    if (kind == "permission_prompt" || kind == "agent_needs_input" || kind == "ToolPermission") {
        return waiting();
    }
    if (kind == "idle_prompt" || kind == "agent_completed") {
        return before && !before->isNeedsYou() ? std::optional{AgentStatus::done()} : std::nullopt;
    }
    const bool asksPermission = event.message && Text::lowered(*event.message).contains("permission");
    if (asksPermission || (before && before->isWorking())) {
        return waiting();
    }
    return std::nullopt;
}

std::string withoutUsing(std::string text) {
    constexpr std::string_view word = "Using ";
    for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at)) {
        text.erase(at, word.size());
    }
    return text;
}

} // namespace

std::optional<AgentStatus> afterHook(const HookBridge::Event& event, HookMeaning meaning,
                                     const std::optional<AgentStatus>& before) {
    switch (meaning) {
    case HookMeaning::sessionStart:
        return before && before->isWorking() ? std::nullopt : std::optional{AgentStatus::idle()};
    case HookMeaning::promptSubmit:
    case HookMeaning::toolUse:
        return AgentStatus::working();
    case HookMeaning::permissionRequest:
        return AgentStatus::needsYou(approval(event.tool));
    case HookMeaning::notification:
        return afterNotification(event, before);
    case HookMeaning::stop:
        return event.status == "error" ? AgentStatus::needsYou("Stopped with an error") : AgentStatus::done();
    case HookMeaning::stopFailure:
        return AgentStatus::needsYou(event.message ? "Stopped: " + *event.message : "Stopped with an error");
    case HookMeaning::sessionEnd:
    case HookMeaning::other:
        return std::nullopt;
    }
    return std::nullopt;
}

std::string approval(const std::optional<std::string>& tool) {
    using Kind = AgentActivity::Kind;
    if (!tool || tool->empty()) {
        return "Waiting for your approval";
    }
    const Kind kind = AgentActivity::kindOf(*tool);
    switch (kind) {
    case Kind::shell:
        return "Waiting for you to approve a command";
    case Kind::edit:
        return "Waiting for you to approve a file change";
    case Kind::read:
    case Kind::search:
        return "Waiting for you to let it read files";
    case Kind::web:
        return "Waiting for you to approve a web request";
    case Kind::delegate:
        return "Waiting for you to approve a sub-agent";
    case Kind::plan:
        return "Waiting for you to review its plan";
    case Kind::thinking:
    case Kind::tool:
        break;
    }
    const std::string name = Text::lowered(*tool);
    if (name.contains("askuser") || name.contains("question")) {
        return "Has a question for you";
    }
    if (name.contains("exitplanmode")) {
        return "Waiting for you to review its plan";
    }
    const AgentActivity activity{.kind = kind, .tool = *tool, .detail = {}, .finished = false, .time = {}};
    return "Waiting for you to approve " + withoutUsing(activity.text());
}

std::string plain(std::string_view message) {
    constexpr std::string_view permission = "permission to use ";
    const std::string lowered = Text::lowered(message);
    if (const auto at = lowered.find(permission); at != std::string::npos) {
        return approval(std::string{Text::trimmed(message.substr(at + permission.size()))});
    }
    if (lowered.contains("waiting for your input") || lowered.contains("waiting for input")) {
        return "Waiting for your reply";
    }
    if (lowered == "needs your approval") {
        return "Waiting for your approval";
    }
    return std::string{message};
}

} // namespace kippo::StatusNormalizer
