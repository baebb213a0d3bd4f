#include "App/Terminal/CodexHooks.h"

#include "Agents/HookBridge.h"
#include "Support/Json.h"
#include "Support/JsonTree.h"
#include "Support/Text.h"

#include <algorithm>
#include <fmt/format.h>

namespace kippo::Terminal::CodexHooks {

namespace {

using Json::Node;

/// "PreToolUse" is "pre_tool_use" in a key.
std::string snakeCase(std::string_view name) {
    std::string result;
    for (const char c : name) {
        if (c >= 'A' && c <= 'Z') {
            result += result.empty() ? "" : "_";
            result += static_cast<char>(c - 'A' + 'a');
        } else {
            result += c;
        }
    }
    return result;
}

const Node* stringMember(const Node& node, std::string_view name) {
    const auto* found = node.member(name);
    return found != nullptr && found->kind == Json::Kind::string ? found : nullptr;
}

bool isOurs(const Node& handler) {
    const auto* command = stringMember(handler, "command");
    return command != nullptr &&
           (command->text.contains(HookBridge::hookFlag) || command->text.contains(HookBridge::legacyHookFlag));
}

/// The members in the order of their names, as Codex hashes them.
std::string identity(std::string_view event, const Node& group, const Node& handler) {
    const auto* command = handler.member("command");
    const auto* timeout = handler.member("timeout");
    const bool isOfOurShape = group.children.size() == 1 && handler.children.size() == 3 && timeout != nullptr &&
                              stringMember(handler, "type") != nullptr && handler.member("type")->text == "command" &&
                              !timeout->text.empty() &&
                              timeout->text.find_first_not_of("0123456789") == std::string::npos;
    if (!isOfOurShape) {
        return {};
    }
    // A session's end waits no longer than this, whatever the entry says.
    constexpr double longestEnd = 3;
    const auto seconds = Json::toDouble(timeout->text).value_or(0);
    std::string quoted;
    Json::Writer{quoted}.string(command->text);
    return fmt::format(
        R"({{"event_name":"{}","hooks":[{{"async":false,"command":{},"timeout":{},"type":"command"}}]}})", event,
        quoted, event == "session_end" ? std::min(seconds, longestEnd) : seconds);
}

void addEntries(const Node& eventList, std::vector<Entry>& result) {
    const auto event = snakeCase(eventList.key);
    for (std::size_t group = 0; group < eventList.children.size(); ++group) {
        const auto* handlers = eventList.children[group].member("hooks");
        for (std::size_t index = 0; handlers != nullptr && index < handlers->children.size(); ++index) {
            const auto& handler = handlers->children[index];
            if (isOurs(handler)) {
                result.push_back({fmt::format(":{}:{}:{}", event, group, index),
                                  handlers->children.size() == 1 ? identity(event, eventList.children[group], handler)
                                                                 : std::string{}});
            }
        }
    }
}

/// A line of TOML as "name=value", without blanks and comment.
std::string squeezed(std::string_view line) {
    std::string result{line.substr(0, line.find('#'))};
    std::erase_if(result, [](char c) { return c == ' ' || c == '\t' || c == '\r'; });
    return result;
}

} // namespace

std::vector<Entry> entries(std::string_view hooks) {
    std::vector<Entry> result;
    const auto tree = Json::tree(hooks, [](const Node&, std::size_t) { return true; });
    const auto* events = tree ? tree->member("hooks") : nullptr;
    for (std::size_t index = 0; events != nullptr && index < events->children.size(); ++index) {
        addEntries(events->children[index], result);
    }
    return result;
}

Record record(std::string_view config, std::string_view key) {
    Record result;
    for (const char quote : {'"', '\''}) {
        const auto name = quote + std::string{key} + quote;
        const auto found = config.find(name);
        if (found == std::string_view::npos) {
            continue;
        }
        // A table ends where the next one begins, one written in braces with its brace.
        auto table = config.substr(found + name.size());
        table = table.substr(0, std::min(table.find("\n["), table.find('}')));
        constexpr std::string_view algorithm = "sha256:";
        if (const auto hash = table.find(algorithm); table.contains("trusted_hash") && hash != table.npos) {
            const auto digits = table.substr(hash + algorithm.size());
            result.trustedHash = std::string{digits.substr(0, digits.find_first_not_of("0123456789abcdef"))};
        }
        result.isDisabled = squeezed(table).contains("enabled=false");
    }
    return result;
}

bool areHooksOff(std::string_view config) {
    std::string table;
    for (const auto line : Text::split(config, '\n')) {
        const auto text = squeezed(line);
        if (text.starts_with('[')) {
            table = text;
        } else if ((table == "[features]" && text == "hooks=false") ||
                   (table.empty() && text == "features.hooks=false")) {
            return true;
        }
    }
    return false;
}

} // namespace kippo::Terminal::CodexHooks
