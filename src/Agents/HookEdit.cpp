#include "Agents/HookEdit.h"

#include "Agents/HookEntries.h"
#include "Agents/HookInstallation.h"
#include "Support/JsonLayout.h"
#include "Support/JsonTree.h"
#include "Support/Splices.h"

#include <algorithm>
#include <functional>

namespace kippo::HookEdit {

namespace {

using Json::Kind;
using Json::Node;

bool isHooked(HookAgent agent, std::string_view event) {
    const auto events = HookBridge::hookedEvents(agent);
    return std::ranges::find(events, event) != events.end();
}

/// A settings file's text, its tree down to the members of the handlers, and the changes to be made of it.
class Settings {
public:
    static std::optional<Settings> read(std::string_view text, HookAgent agent) {
        bool inHooks = false;
        auto root = Json::tree(text, [&inHooks](const Node& node, std::size_t depth) {
            inHooks = depth == 1 ? node.key == "hooks" : inHooks;
            return depth == 0 || (inHooks && depth < 6);
        });
        if (!root || root->kind != Kind::object) {
            return std::nullopt;
        }
        Settings settings{text, agent, std::move(*root)};
        return settings.hasListsWhereTheyBelong() ? std::optional{std::move(settings)} : std::nullopt;
    }

    /// "hooks" at the top; none when it is missing.
    const Node* hooks() const { return root_.member("hooks"); }
    bool isOnOneLine() const {
        return text_.substr(root_.begin, root_.end - root_.begin).find_first_of("\r\n") == std::string_view::npos;
    }
    /// The same on several lines.
    std::string overLines() const {
        return std::string{text_.substr(0, root_.begin)} +
               Json::overLines(text_.substr(root_.begin, root_.end - root_.begin), layout_) +
               std::string{text_.substr(root_.end)};
    }

    bool hasChanges() const { return !splices_.empty(); }
    std::string changed() const { return splices_.applied(text_); }

    void install(std::string_view command) {
        std::vector<std::string> members;
        if (agent_ == HookAgent::cursor && root_.member("version") == nullptr) {
            members.emplace_back("\"version\":1");
        }
        if (hooks() == nullptr) {
            members.push_back("\"hooks\":{" + newLists({}, command) + "}");
        }
        append(root_, members);
        if (hooks() == nullptr) {
            return;
        }
        members.clear();
        for (const auto event : HookBridge::hookedEvents(agent_)) {
            if (const auto* list = hooks()->member(event)) {
                install(*list, command);
            } else {
                members.push_back(newList(event, command));
            }
        }
        append(*hooks(), members);
        for (const auto& list : hooks()->children) {
            if (!isHooked(agent_, list.key)) {
                strip(list, nullptr);
            }
        }
    }

    /// `had` says whether the list of an event, or "hooks" itself under that name, is the user's and stays when empty.
    void uninstall(const std::function<bool(std::string_view)>& had) {
        if (hooks() == nullptr) {
            return;
        }
        const auto goes = [&had](const Node& list) {
            return list.kind == Kind::array && !list.children.empty() &&
                   std::ranges::all_of(list.children, HookEntries::isWhollyOurs) && !had(list.key);
        };
        const auto& lists = hooks()->children;
        if (!lists.empty() && std::ranges::all_of(lists, goes) && agent_ != HookAgent::cursor && !had("hooks")) {
            remove(root_, [this](const Node& member) { return &member == hooks(); });
            return;
        }
        remove(*hooks(), goes);
        for (const auto& list : lists) {
            if (!goes(list)) {
                strip(list, nullptr);
            }
        }
    }

private:
    Settings(std::string_view text, HookAgent agent, Node root)
        : text_(text), agent_(agent), root_(std::move(root)), layout_(Json::Layout::of(text)) {}

    bool hasListsWhereTheyBelong() const {
        if (hooks() == nullptr) {
            return true;
        }
        return hooks()->kind == Kind::object && std::ranges::all_of(hooks()->children, [this](const Node& list) {
                   return list.kind == Kind::array || !isHooked(agent_, list.key);
               });
    }

    std::string newList(std::string_view event, std::string_view command) const {
        return "\"" + std::string{event} + "\":[" + HookEntries::json(agent_, event, command) + "]";
    }
    std::string newLists(std::string all, std::string_view command) const {
        for (const auto event : HookBridge::hookedEvents(agent_)) {
            all += (all.empty() ? "" : ",") + newList(event, command);
        }
        return all;
    }

    void install(const Node& list, std::string_view command) {
        const auto& entries = list.children;
        auto kept = std::ranges::find_if(
            entries, [&](const Node& entry) { return HookEntries::isRight(entry, agent_, list.key, command); });
        const auto entry = HookEntries::json(agent_, list.key, command);
        if (kept == entries.end()) {
            kept = std::ranges::find_if(entries, HookEntries::isWhollyOurs);
            if (kept == entries.end()) {
                append(list, {entry});
            } else {
                replace(*kept, entry);
            }
        }
        strip(list, kept == entries.end() ? nullptr : &*kept);
    }

    /// Takes Kippo's handlers out of a list, whole entries where nothing else is in them, except out of `kept`.
    void strip(const Node& list, const Node* kept) {
        if (list.kind != Kind::array) {
            return;
        }
        const auto goes = [kept](const Node& entry) { return &entry != kept && HookEntries::isWhollyOurs(entry); };
        remove(list, goes);
        for (const auto& entry : list.children) {
            const auto* group = HookEntries::handlers(entry);
            if (&entry != kept && !goes(entry) && group != nullptr) {
                remove(*group, HookEntries::isOurs);
            }
        }
    }

    void replace(const Node& value, std::string_view json) {
        const bool isLaidOut = Json::beginsLine(text_, value.start) ||
                               text_.substr(value.begin, value.end - value.begin).find('\n') != std::string_view::npos;
        splices_.replace(value.begin, value.end,
                         isLaidOut ? Json::overLines(json, layout_, Json::indentationAt(text_, value.start))
                                   : Json::onOneLine(json));
    }

    /// Puts members or elements, given as compact JSON, at the end of an object or list.
    void append(const Node& container, const std::vector<std::string>& values) {
        if (values.empty()) {
            return;
        }
        const auto& siblings = container.children;
        const bool isEmpty = siblings.empty();
        const std::string outer{Json::indentationAt(text_, isEmpty ? container.begin : siblings.back().start)};
        const auto withOwnLine = std::find_if(siblings.rbegin(), siblings.rend(), [this](const Node& sibling) {
            return Json::beginsLine(text_, sibling.start);
        });
        const bool hasOwnLine = withOwnLine != siblings.rend();
        const auto indentation =
            hasOwnLine ? std::string{Json::indentationAt(text_, withOwnLine->start)} : outer + layout_.unit;
        std::string all;
        for (const auto& value : values) {
            all += isEmpty && all.empty() ? "" : ",";
            // Beside elements on one line an element goes on that line too.
            all += !isEmpty && !hasOwnLine && container.kind == Kind::array
                       ? " " + Json::onOneLine(value)
                       : layout_.lineEnd + indentation + Json::overLines(value, layout_, indentation);
        }
        if (isEmpty) {
            splices_.replace(container.begin + 1, container.end - 1, all + layout_.lineEnd + outer);
        } else {
            splices_.replace(siblings.back().end, siblings.back().end, all);
        }
    }

    /// Takes members or elements out, each run with the commas and blanks that came with it.
    template <typename Goes> void remove(const Node& container, const Goes& goes) {
        const auto& values = container.children;
        for (auto first = std::ranges::find_if(values, goes); first != values.end();) {
            const auto next = std::find_if_not(first, values.end(), goes);
            if (first != values.begin()) {
                splices_.replace((first - 1)->end, (next - 1)->end, {});
            } else if (next != values.end()) {
                splices_.replace(first->start, next->start, {});
            } else {
                splices_.replace(container.begin + 1, container.end - 1, {});
            }
            first = std::find_if(next, values.end(), goes);
        }
    }

    std::string_view text_;
    HookAgent agent_;
    Node root_;
    Json::Layout layout_;
    Splices splices_;
};

/// `edit` made on the text; a text on one line is laid out first, but only if there is anything to change.
template <typename Edit> std::optional<std::string> edited(std::string_view text, HookAgent agent, const Edit& edit) {
    auto settings = Settings::read(text, agent);
    if (!settings) {
        return std::nullopt;
    }
    edit(*settings);
    if (!settings->hasChanges()) {
        return std::string{text};
    }
    if (!settings->isOnOneLine()) {
        return settings->changed();
    }
    const auto laidOut = settings->overLines();
    settings = Settings::read(laidOut, agent);
    edit(*settings);
    return settings->changed();
}

bool isInstallOf(std::string_view text, std::string_view original, HookAgent agent) {
    const auto ours = commands(text, agent);
    const auto before = commands(original, agent);
    return ours && !ours->empty() && before && before->empty() &&
           installed(original, agent, ours->begin()->second.front()) == text;
}

} // namespace

std::optional<std::string> installed(std::string_view text, HookAgent agent, std::string_view command) {
    return edited(text, agent, [command](Settings& settings) { settings.install(command); });
}

std::optional<std::string> uninstalled(std::string_view text, HookAgent agent,
                                       std::optional<std::string_view> original) {
    if (original && isInstallOf(text, *original, agent)) {
        return std::string{*original};
    }
    const auto before = original ? Settings::read(*original, agent) : std::nullopt;
    const auto* hooksBefore = before ? before->hooks() : nullptr;
    return edited(text, agent, [hooksBefore](Settings& settings) {
        settings.uninstall([hooksBefore](std::string_view name) {
            return hooksBefore != nullptr && (name == "hooks" || hooksBefore->member(name) != nullptr);
        });
    });
}

std::optional<std::map<std::string, std::vector<std::string>>> commands(std::string_view text, HookAgent agent) {
    const auto settings = Settings::read(text, agent);
    if (!settings) {
        return std::nullopt;
    }
    std::map<std::string, std::vector<std::string>> all;
    const auto add = [&all](const Node& event, const Node& handler) {
        if (HookEntries::isOurs(handler)) {
            all[event.key].push_back(handler.member("command")->text);
        }
    };
    if (settings->hooks() == nullptr) {
        return all;
    }
    for (const auto& list : settings->hooks()->children) {
        for (const auto& entry : list.children) {
            add(list, entry);
            if (const auto* group = HookEntries::handlers(entry)) {
                std::ranges::for_each(group->children, [&](const Node& handler) { add(list, handler); });
            }
        }
    }
    return all;
}

} // namespace kippo::HookEdit
