#include "Agents/ToolCalls.h"

#include "Agents/ToolInput.h"
#include "Support/Json.h"
#include "Support/Text.h"

#include <algorithm>
#include <ranges>

namespace kippo {

namespace {

bool same(const JsonText& a, const JsonText& b) { return a.raw == b.raw; }

bool runs(const ToolCalls::Call& call) { return !call.finished && !call.thinking; }

} // namespace

/// Only the call that is shown gets this far, so the copy costs nothing to speak of.
std::optional<std::string> ToolCalls::detailOfObject(const JsonText& input) {
    struct Visitor final : Json::Visitor {
        ToolInput input;
        bool value(Json::Path path, Json::Kind kind, std::string_view text) override {
            input.value(path, kind, text);
            return true;
        }
        bool begin(Json::Path path, Json::Kind) override {
            input.begin(path);
            return true;
        }
    };
    std::string object{input.raw};
    Visitor visitor;
    if (Json::read(object, visitor) != Json::Outcome::complete) {
        return std::nullopt;
    }
    const auto detail = AgentActivity::detailFrom(visitor.input);
    return detail ? std::optional{Text::validUtf8(*detail)} : std::nullopt;
}

bool ToolCalls::knows(const JsonText& id) const {
    return !id.empty() && std::ranges::any_of(calls_, [&](const Call& call) { return same(call.id, id); });
}

void ToolCalls::finish(const JsonText& id) {
    for (auto& call : calls_ | std::views::reverse) {
        if (call.thinking) {
            continue;
        }
        if (!id.empty() && same(call.id, id)) {
            call.finished = true;
            return;
        }
        call.finished = call.finished || id.empty() || call.id.empty();
    }
}

void ToolCalls::finishAll() {
    for (auto& call : calls_) {
        call.finished = true;
    }
}

std::string ToolCalls::pendingQuestion() const {
    for (const auto& call : calls_ | std::views::reverse) {
        if (!runs(call)) {
            continue;
        }
        auto name = Text::lowered(call.name.decoded());
        if (name == "askuserquestion" || name == "exitplanmode") {
            return name;
        }
    }
    return {};
}

std::optional<AgentActivity> ToolCalls::activity() const {
    if (calls_.empty()) {
        return std::nullopt;
    }
    const Call* shown = &calls_.back();
    if (shown->finished && !shown->thinking) {
        const auto sibling = std::ranges::find_if(calls_ | std::views::reverse, [shown](const Call& call) {
            return runs(call) && same(call.group, shown->group);
        });
        shown = sibling == calls_.rend() ? shown : &*sibling;
    }
    AgentActivity activity;
    activity.tool = Text::validUtf8(shown->name.decoded());
    activity.kind = shown->kind.value_or(AgentActivity::kindOf(activity.tool));
    if (shown->detail) {
        activity.detail = shown->detail(shown->input);
    }
    activity.finished = shown->finished;
    activity.time = shown->time;
    return activity;
}

} // namespace kippo
