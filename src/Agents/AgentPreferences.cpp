#include "Agents/AgentPreferences.h"

#include "Support/Text.h"

#include <algorithm>
#include <utility>

namespace kippo {

namespace {

using Names = std::vector<std::string>;

constexpr std::string_view hiddenKey = "hiddenAgents";
constexpr std::string_view lightsOffKey = "statusLightsOff";
constexpr std::string_view watchedKey = "watchedAgentNames";
constexpr std::string_view hiddenProcessesKey = "hiddenProcesses";
constexpr std::string_view dismissedKey = "dismissedAgentSuggestions";

std::set<std::string> with(std::set<std::string> set, std::string_view member, bool in) {
    if (in) {
        set.emplace(member);
    } else {
        set.erase(std::string{member});
    }
    return set;
}

bool sameName(std::string_view a, std::string_view b) { return Text::lowered(a) == Text::lowered(b); }

bool contains(const Names& names, std::string_view name) {
    return std::ranges::any_of(names, [name](const std::string& other) { return sameName(other, name); });
}

/// The user may have edited the list by hand.
Names tidied(const Names& names) {
    Names kept;
    for (const std::string& name : names) {
        std::string trimmed{Text::trimmed(name)};
        if (!trimmed.empty() && !contains(kept, trimmed)) {
            kept.push_back(std::move(trimmed));
        }
    }
    return kept;
}

} // namespace

AgentPreferences::AgentPreferences(UserDefaults& defaults) : defaults_(defaults) { reload(); }

bool AgentPreferences::reload() {
    const auto set = [this](std::string_view key) {
        const auto names = defaults_.get<Names>(key);
        return std::set<std::string>{names.begin(), names.end()};
    };
    Values read{.hidden = set(hiddenKey),
                .lightsOff = set(lightsOffKey),
                .watchedNames = tidied(defaults_.get<Names>(watchedKey)),
                .hiddenProcesses = defaults_.get<Names>(hiddenProcessesKey),
                .dismissedSuggestions = set(dismissedKey)};
    return std::exchange(values_, read) != read;
}

void AgentPreferences::store(std::string_view key, const std::set<std::string>& set) {
    defaults_.set(key, Names{set.begin(), set.end()});
}

void AgentPreferences::setHidden(AgentKind kind, bool hidden) {
    store(hiddenKey, with(values_.hidden, rawValue(kind), hidden));
}

void AgentPreferences::setLightsOff(AgentKind kind, bool off) {
    store(lightsOffKey, with(values_.lightsOff, rawValue(kind), off));
}

void AgentPreferences::watch(const std::string& name) {
    const std::string wanted{Text::trimmed(Text::lastPathComponent(Text::trimmed(name)))};
    if (wanted.empty() || contains(values_.watchedNames, wanted)) {
        return;
    }
    Names names = values_.watchedNames;
    names.push_back(wanted);
    defaults_.set(watchedKey, std::move(names));
}

void AgentPreferences::unwatch(const std::string& name) {
    Names names = values_.watchedNames;
    if (std::erase_if(names, [&name](const std::string& other) { return sameName(other, name); }) > 0) {
        defaults_.set(watchedKey, std::move(names));
    }
}

bool AgentPreferences::isWatched(const std::string& name) const { return contains(values_.watchedNames, name); }

void AgentPreferences::hideProcess(const std::string& name) {
    Names names = values_.hiddenProcesses;
    if (!name.empty() && std::ranges::find(names, name) == names.end()) {
        names.push_back(name);
        defaults_.set(hiddenProcessesKey, std::move(names));
    }
}

void AgentPreferences::unhideProcess(const std::string& name) {
    Names names = values_.hiddenProcesses;
    if (std::erase(names, name) > 0) {
        defaults_.set(hiddenProcessesKey, std::move(names));
    }
}

void AgentPreferences::dismissSuggestion(const std::string& name) {
    store(dismissedKey, with(values_.dismissedSuggestions, name, true));
}

} // namespace kippo
