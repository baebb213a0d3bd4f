#pragma once

#include "Agents/AgentModels.h"
#include "Support/UserDefaults.h"

#include <set>
#include <string>
#include <vector>

namespace kippo {

/// What the user chose about agents, as the settings hold it: a change goes to the settings, and from there, as one
/// made by hand would, into the values here with the next `reload`. Owned by the agent store.
class AgentPreferences {
public:
    explicit AgentPreferences(UserDefaults& defaults);

    /// Takes up what the settings say now; true when that differs.
    bool reload();

    /// Raw values of the kinds whose sessions are not shown.
    const std::set<std::string>& hidden() const { return values_.hidden; }
    /// Raw values of the kinds that the closed notch says nothing of.
    const std::set<std::string>& lightsOff() const { return values_.lightsOff; }
    /// Without white space around them, none twice in whatever case, in the user's order.
    const std::vector<std::string>& watchedNames() const { return values_.watchedNames; }
    const std::vector<std::string>& hiddenProcesses() const { return values_.hiddenProcesses; }
    const std::set<std::string>& dismissedSuggestions() const { return values_.dismissedSuggestions; }

    void setHidden(AgentKind kind, bool hidden);
    void setLightsOff(AgentKind kind, bool off);
    /// Of a path the last component counts, for that is what programs are told apart by.
    void watch(const std::string& name);
    void unwatch(const std::string& name);
    bool isWatched(const std::string& name) const;
    void hideProcess(const std::string& name);
    void unhideProcess(const std::string& name);
    void dismissSuggestion(const std::string& name);

private:
    struct Values {
        std::set<std::string> hidden;
        std::set<std::string> lightsOff;
        std::vector<std::string> watchedNames;
        std::vector<std::string> hiddenProcesses;
        std::set<std::string> dismissedSuggestions;
        bool operator==(const Values&) const = default;
    };

    void store(std::string_view key, const std::set<std::string>& set);

    UserDefaults& defaults_;
    Values values_;
};

} // namespace kippo
