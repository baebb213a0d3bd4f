// An agent's settings may hold anything. Whatever is accepted comes out with one entry of Kippo per event and nothing
// of the user's changed, and goes back to the bytes that it was.

#include "Agents/HookEdit.h"
#include "Agents/HookInstallation.h"
#include "Require.h"
#include "Support/JsonLayout.h"
#include "Support/JsonTree.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace kippo {

namespace {

using Texts = std::vector<std::string_view>;

const std::string command = HookBridge::hookCommand(HookAgent::claude, "/opt/it's/kippo");

/// The input as a row of choices; the first ones when it has come to its end.
class Choices {
public:
    explicit Choices(std::string_view bytes) : bytes_(bytes) {}

    /// 0 to `count - 1`.
    std::size_t oneOf(std::size_t count) {
        const std::size_t byte = bytes_.empty() ? 0U : static_cast<unsigned char>(bytes_.front());
        bytes_.remove_prefix(bytes_.empty() ? 0 : 1);
        return byte % count;
    }
    std::string take(std::size_t most) {
        const auto taken = bytes_.substr(0, most);
        bytes_.remove_prefix(taken.size());
        return std::string{taken};
    }

private:
    std::string_view bytes_;
};

/// Settings made of what settings are made of, in an order that the input decides.
class Sentence {
public:
    Sentence(Choices& input, HookAgent agent) : input_(input), agent_(agent) {}

    std::string settings() { return gap() + object(0) + gap(); }

private:
    std::string pick(const Texts& texts) { return std::string{texts[input_.oneOf(texts.size())]}; }
    std::string gap() { return pick({"", "", " ", "\n", "\n    ", "\r\n\t", "\t", "\r", "\n\n  "}); }

    std::string name(int depth) {
        if (depth == 1 && input_.oneOf(2) == 1) {
            const auto events = HookBridge::hookedEvents(agent_);
            return "\"" + pick({events.begin(), events.end()}) + "\"";
        }
        return pick({"\"hooks\"", "\"hooks\"", "\"command\"", "\"matcher\"", "\"type\"", "\"timeout\"", "\"version\"",
                     "\"h\\u006foks\"", "\"\"", "\"é\\/\"", "\"name\"", "\"x\""});
    }
    std::string scalar() {
        if (input_.oneOf(10) == 9) {
            return input_.take(input_.oneOf(8));
        }
        return pick({"1e3", "12345678901234567890", "1E+400", "-0.0", "5", "5000", "true", "null", "\"\"", "\"*\"",
                     "\"command\"", "\"kippo\"", "\"\\ud83d\\u0000\\\"\"", "\"k --kippo-hook\"", "\"--varde-hook\"",
                     "\"'/opt/it'\\\\''s/kippo' --kippo-hook --agent claude\""});
    }
    std::string object(int depth) {
        std::string text = "{" + gap();
        for (auto left = input_.oneOf(5); left > 0; --left) {
            text += name(depth) + gap() + ":" + gap() + value(depth + 1) + gap() + (left > 1 ? "," + gap() : "");
        }
        return text + "}";
    }
    std::string list(int depth) {
        std::string text = "[" + gap();
        for (auto left = input_.oneOf(4); left > 0; --left) {
            text += value(depth + 1) + gap() + (left > 1 ? "," + gap() : "");
        }
        return text + "]";
    }
    std::string value(int depth) {
        // Mostly the shape that hooks have: objects and lists by turns.
        switch (depth < 8 ? input_.oneOf(6) : 0) {
        case 0:
        case 1:
            return scalar();
        case 2:
            return depth % 2 == 0 ? object(depth) : list(depth);
        default:
            return depth == 2 || depth == 4 ? list(depth) : object(depth);
        }
    }

    Choices& input_;
    HookAgent agent_;
};

std::size_t count(const std::map<std::string, std::vector<std::string>>& commands) {
    std::size_t all = 0;
    for (const auto& [event, list] : commands) {
        all += list.size();
    }
    return all;
}

/// Whether the second text has all that the first has, in the same order.
bool holdsAllOf(std::string_view whole, std::string_view part) {
    auto at = whole.begin();
    return std::ranges::all_of(part, [&](char c) {
        at = std::find(at, whole.end(), c);
        return at != whole.end() && (++at, true);
    });
}

bool hasListsThatHoldSomething(const std::string& text, HookAgent agent) {
    const auto root = Json::tree(text, [](const Json::Node&, std::size_t depth) { return depth < 3; });
    const auto* hooks = root ? root->member("hooks") : nullptr;
    const auto events = HookBridge::hookedEvents(agent);
    return hooks != nullptr && (agent != HookAgent::cursor || root->member("version") != nullptr) &&
           std::ranges::all_of(events, [hooks](std::string_view event) {
               const auto* list = hooks->member(event);
               return list != nullptr && !list->children.empty();
           });
}

void check(const std::string& text, HookAgent agent) {
    const auto before = HookEdit::commands(text, agent);
    const auto after = HookEdit::installed(text, agent, command);
    const auto without = HookEdit::uninstalled(text, agent, std::nullopt);
    require(after.has_value() == before.has_value() && without.has_value() == before.has_value());
    if (!before) {
        return;
    }
    const auto events = HookBridge::hookedEvents(agent);
    const auto ours = HookEdit::commands(*after, agent);
    require(ours && count(*ours) == events.size() && std::ranges::all_of(events, [&](std::string_view event) {
                return ours->at(std::string{event}).front() == command;
            }));
    require(HookEdit::installed(*after, agent, command) == after);
    require(count(*HookEdit::commands(*without, agent)) == 0);
    const auto back = HookEdit::uninstalled(*after, agent, std::nullopt);
    require(back && count(*HookEdit::commands(*back, agent)) == 0);
    if (count(*before) == 0) {
        require(without == text);
        require(holdsAllOf(Json::onOneLine(*after), Json::onOneLine(text)));
        require(HookEdit::uninstalled(*after, agent, text) == text);
        if (text.substr(text.find('{'), text.rfind('}') - text.find('{')).find_first_of("\r\n") != std::string::npos &&
            hasListsThatHoldSomething(text, agent)) {
            require(back == text);
        }
    }
}

} // namespace

} // namespace kippo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kippo;
    Choices input{{reinterpret_cast<const char*>(data), size}};
    const auto agent = allHookAgents[input.oneOf(allHookAgents.size())];
    check(input.oneOf(2) == 1 ? Sentence{input, agent}.settings() : input.take(size), agent);
    return 0;
}
