#include "Agents/HookEntries.h"

#include "Agents/HookBridge.h"

#include <algorithm>
#include <optional>

namespace kippo::HookEntries {

namespace {

bool isToolEvent(HookAgent agent, std::string_view event) {
    switch (agent) {
    case HookAgent::claude:
        return event == "PreToolUse" || event == "PostToolUse" || event == "PostToolUseFailure" ||
               event == "PermissionRequest";
    case HookAgent::gemini:
        return event == "BeforeTool" || event == "AfterTool";
    default:
        return false;
    }
}

/// Nothing where the agent's entry carries none.
std::optional<std::string_view> matcher(HookAgent agent, std::string_view event) {
    if (!isToolEvent(agent, event)) {
        return std::nullopt;
    }
    return agent == HookAgent::gemini ? ".*" : "*";
}

/// Gemini counts in milliseconds, the others in seconds.
std::int64_t timeout(HookAgent agent) { return agent == HookAgent::gemini ? 5000 : 5; }

void writeHandler(Json::Writer& out, HookAgent agent, std::string_view command) {
    out.beginObject();
    if (agent == HookAgent::gemini) {
        out.key("name").string("kippo");
    }
    if (agent != HookAgent::cursor) {
        out.key("type").string("command");
    }
    out.key("command").string(command);
    out.key("timeout").number(timeout(agent));
    out.endObject();
}

bool isText(const Json::Node* node, std::string_view text) {
    return node != nullptr && node->kind == Json::Kind::string && node->text == text;
}

bool isRightHandler(const Json::Node& handler, HookAgent agent, std::string_view command) {
    const auto* limit = handler.member("timeout");
    return isText(handler.member("command"), command) && limit != nullptr && limit->kind == Json::Kind::number &&
           Json::toDouble(limit->text) == static_cast<double>(timeout(agent)) &&
           (agent == HookAgent::cursor || isText(handler.member("type"), "command")) &&
           (agent != HookAgent::gemini || isText(handler.member("name"), "kippo"));
}

} // namespace

std::string json(HookAgent agent, std::string_view event, std::string_view command) {
    std::string text;
    Json::Writer out{text};
    if (agent == HookAgent::cursor) {
        writeHandler(out, agent, command);
        return text;
    }
    out.beginObject();
    if (const auto wanted = matcher(agent, event)) {
        out.key("matcher").string(*wanted);
    }
    out.key("hooks").beginArray();
    writeHandler(out, agent, command);
    out.endArray().endObject();
    return text;
}

bool isOurs(const Json::Node& handler) {
    const auto* command = handler.member("command");
    return command != nullptr && command->kind == Json::Kind::string &&
           (command->text.contains("--kippo-hook") || command->text.contains("--varde-hook"));
}

const Json::Node* handlers(const Json::Node& entry) {
    const auto* list = entry.member("hooks");
    return list != nullptr && list->kind == Json::Kind::array ? list : nullptr;
}

bool isWhollyOurs(const Json::Node& entry) {
    const auto* group = handlers(entry);
    return isOurs(entry) ||
           (group != nullptr && !group->children.empty() && std::ranges::all_of(group->children, isOurs));
}

bool isRight(const Json::Node& entry, HookAgent agent, std::string_view event, std::string_view command) {
    if (agent == HookAgent::cursor) {
        return isRightHandler(entry, agent, command) && handlers(entry) == nullptr;
    }
    const auto* group = handlers(entry);
    if (group == nullptr || isOurs(entry) || std::ranges::count_if(group->children, isOurs) != 1) {
        return false;
    }
    const auto wanted = matcher(agent, event);
    const auto* found = entry.member("matcher");
    return (wanted ? isText(found, *wanted) : found == nullptr) &&
           isRightHandler(*std::ranges::find_if(group->children, isOurs), agent, command);
}

} // namespace kippo::HookEntries
