#include "App/Terminal/Doctor.h"

#include "Agents/EventLog.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>

namespace kippo::Terminal {

namespace {

using State = Check::State;
using Agent = DoctorFacts::Agent;
using Connection = HookFacts::Connection;
using Checks = std::vector<Check>;

// What nobody notices beside an agent's own work.
constexpr Seconds slowHook{0.05};
// An agent's transcripts that are newer than its last event by this much had events that did not arrive.
constexpr Seconds silence{600};
// An agent that worked this long after its settings were written had read them.
constexpr Seconds settling{60};

std::string_view title(const Agent& agent) { return displayTitle(agentKind(agent.hooks.agent)); }

std::string id(std::string_view group, const Agent& agent) {
    return fmt::format("{}.{}", group, rawValue(agent.hooks.agent));
}

std::string installCommand(const Agent& agent) {
    return fmt::format("kippo hooks install {}", rawValue(agent.hooks.agent));
}

std::string ago(Date date, Date now) { return Formatters::friendlyDuration((now - date).count()) + " ago"; }

Checks executableCheck(const DoctorFacts& facts) {
    if (facts.isInBuildTree) {
        return {{"executable", State::note,
                 fmt::format("This is {}, in a build tree.", tilde(facts.executable, facts.home)),
                 "Before you delete that tree, run: kippo hooks remove"}};
    }
    return {{"executable", State::well, fmt::format("This is {}.", tilde(facts.executable, facts.home)), {}}};
}

Checks hookCheck(const DoctorFacts& facts) {
    if (!facts.hook) {
        return {{"hook", State::ill, "A hook that was tried did not run to its end.",
                 "Agents run this executable for each event; see whether it can be run from other folders, and whether "
                 "there is room in the folder for temporary files."}};
    }
    if (!facts.hook->wrote) {
        return {{"hook", State::ill, "A hook that was tried wrote no event.",
                 "See whether the folder for temporary files is full."}};
    }
    const auto sentence = fmt::format("A hook takes {:.1f} ms and writes its event.", facts.hook->time.count() * 1000);
    if (facts.hook->time > slowHook) {
        return {{"hook", State::note, sentence, "Agents wait for it. Is the machine very busy just now?"}};
    }
    return {{"hook", State::well, sentence, {}}};
}

Checks panelCheck(const DoctorFacts& facts) {
    if (!facts.hasApplication) {
        return {{"panel", State::aside, "The panel is not installed; the terminal commands do without it.", {}}};
    }
    if (facts.applicationPID) {
        return {{"panel", State::well, fmt::format("The panel runs (process {}).", *facts.applicationPID), {}}};
    }
    return {{"panel", State::aside, "The panel does not run. Events are kept for it meanwhile.", {}}};
}

Check presenceCheck(const DoctorFacts& facts, const Agent& agent) {
    const auto name =
        agent.version.empty() ? std::string{title(agent)} : fmt::format("{} {}", title(agent), agent.version);
    if (agent.hooks.program) {
        return {id("agent", agent),
                State::well,
                fmt::format("{} is at {}.", name, tilde(*agent.hooks.program, facts.home)),
                {}};
    }
    if (agent.hooks.isPresent) {
        return {id("agent", agent),
                State::aside,
                fmt::format("{} keeps settings here, but no program of it is on the PATH.", name),
                {}};
    }
    return {id("agent", agent), State::aside, fmt::format("{} is not on this machine.", name), {}};
}

/// `other` is the program that the hooks start in place of this one.
Check otherProgramCheck(const Agent& agent, const std::string& other) {
    if (other == agent.hooks.missing) {
        return {id("hooks", agent), State::ill,
                fmt::format("{}'s hooks start {}, which is not there.", title(agent), other),
                "Run: " + installCommand(agent)};
    }
    return {id("hooks", agent), State::note, fmt::format("{}'s hooks start another program: {}.", title(agent), other),
            "If that is no Kippo, or an old one, run: " + installCommand(agent)};
}

Check hooksCheck(const DoctorFacts& facts, const Agent& agent) {
    switch (agent.hooks.connection) {
    case Connection::none:
        return {id("hooks", agent), State::note, fmt::format("{} is not connected.", title(agent)),
                "To have it report here, run: " + installCommand(agent)};
    case Connection::partial:
        return {id("hooks", agent), State::ill, fmt::format("{} does not report all of its events.", title(agent)),
                "Run: " + installCommand(agent)};
    case Connection::unreadable:
        return {id("hooks", agent), State::ill, agent.hooks.error,
                fmt::format("Mend {}, then run: {}", tilde(agent.hooks.file, facts.home), installCommand(agent))};
    case Connection::complete:
        break;
    }
    if (const auto other = agent.hooks.another(facts.executable); !other.empty()) {
        return otherProgramCheck(agent, other);
    }
    return {
        id("hooks", agent),
        State::well,
        fmt::format("{}'s hooks are in {} and start this program.", title(agent), tilde(agent.hooks.file, facts.home)),
        {}};
}

/// What keeps hooks from running though they are in the file that Kippo knows.
Checks obstacleChecks(const DoctorFacts& facts, const Agent& agent) {
    Checks checks;
    if (agent.areHooksOff) {
        checks.push_back({id("enabled", agent), State::ill, fmt::format("{} has all hooks switched off.", title(agent)),
                          "Its own settings say so; switch hooks on there."});
    }
    if (!agent.otherHome.empty()) {
        checks.push_back(
            {id("home", agent), State::ill,
             fmt::format("{} looks for its settings in {}, not where Kippo's hooks are.", title(agent),
                         agent.otherHome),
             "The environment says so (CLAUDE_CONFIG_DIR or CODEX_HOME). Unset it, or add the hooks there: "
             "kippo hooks prompt " +
                 std::string{rawValue(agent.hooks.agent)}});
    }
    if (!agent.unreadableTranscripts.empty()) {
        checks.push_back({id("transcripts", agent), State::ill,
                          fmt::format("{}'s transcripts in {} cannot be read.", title(agent),
                                      tilde(agent.unreadableTranscripts, facts.home)),
                          "Make the folder readable for you: chmod u+rx"});
    }
    return checks;
}

Checks trustCheck(const DoctorFacts& facts, const Agent& agent) {
    using enum DoctorFacts::CodexTrust;
    const std::string review = "Start codex in a terminal, type /hooks, and trust Kippo's. Until then it skips them.";
    if (agent.hooks.agent != HookAgent::codex) {
        return {};
    }
    switch (facts.codexTrust) {
    case trusted:
        return {{"trust.codex", State::well, "Codex was told to trust Kippo's hooks.", {}}};
    case untrusted:
        return {{"trust.codex", State::ill, "Codex was not told yet to trust Kippo's hooks.", review}};
    case changed:
        return {{"trust.codex", State::ill, "Kippo's hooks are not the ones that Codex was told to trust.", review}};
    case disabled:
        return {{"trust.codex", State::ill, "Some of Kippo's hooks are switched off in Codex.",
                 "Start codex in a terminal, type /hooks, and switch them on."}};
    case unknown:
        break;
    }
    return {{"trust.codex", State::note, "Whether Codex trusts Kippo's hooks cannot be told.",
             "If no event arrives, start codex in a terminal and type /hooks."}};
}

Check eventsCheck(const DoctorFacts& facts, const Agent& agent) {
    const auto& last = agent.hooks.lastEvent;
    const bool workedSince = agent.transcriptWritten && agent.settingsWritten &&
                             *agent.transcriptWritten > *agent.settingsWritten + settling;
    const bool isSilent = workedSince && (!last || *agent.transcriptWritten > *last + silence);
    if (isSilent) {
        return {id("events", agent), State::ill,
                fmt::format("{} worked {}, and no event of that arrived.", title(agent),
                            ago(*agent.transcriptWritten, facts.now)),
                fmt::format("Restart its open sessions: they read hooks only when they start. If that does not help, "
                            "see what it says of hooks itself{}.",
                            agent.hooks.agent == HookAgent::codex ? ", with /hooks" : "")};
    }
    if (!last) {
        return {id("events", agent), State::note, fmt::format("No event of {} has arrived yet.", title(agent)),
                "Start it anew and give it something to do."};
    }
    return {id("events", agent),
            State::well,
            fmt::format("{}'s last event arrived {}.", title(agent), ago(*last, facts.now)),
            {}};
}

Checks agentChecks(const DoctorFacts& facts) {
    Checks checks;
    for (const auto& agent : facts.agents) {
        checks.push_back(presenceCheck(facts, agent));
        if (!agent.hooks.isPresent && agent.hooks.connection == Connection::none) {
            continue;
        }
        checks.push_back(hooksCheck(facts, agent));
        const bool isConnected =
            agent.hooks.connection == Connection::complete || agent.hooks.connection == Connection::partial;
        if (isConnected) {
            std::ranges::move(obstacleChecks(facts, agent), std::back_inserter(checks));
            std::ranges::move(trustCheck(facts, agent), std::back_inserter(checks));
            checks.push_back(eventsCheck(facts, agent));
        }
    }
    return checks;
}

/// "1 event", "2 events".
std::string counted(std::size_t count, std::string_view noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

Checks logChecks(const DoctorFacts& facts) {
    const auto path = tilde(facts.logFile.path, facts.home);
    if (facts.isDiskFull) {
        return {
            {"log", State::ill, fmt::format("The disk of {} is full, so events are lost.", path), "Make room on it."}};
    }
    if (!facts.logFile.obstacle.empty()) {
        return {{"log", State::ill, fmt::format("Events cannot be written to {}.", path),
                 fmt::format("Make {} yours to write: chmod u+w, or chown if a command run with sudo has made it.",
                             tilde(facts.logFile.obstacle, facts.home))}};
    }
    if (!facts.logFile.exists) {
        return {{"log", State::aside, fmt::format("There is no event log yet; the first event makes {}.", path), {}}};
    }
    const bool isLarge = facts.logFile.size > static_cast<std::int64_t>(EventLog::sizeLimit);
    Checks checks{
        {"log",
         State::well,
         fmt::format("The event log {} can be written. It holds {}, {}{}.", path, counted(facts.log.events, "event"),
                     Formatters::memory((facts.logFile.size + 1023) / 1024),
                     isLarge ? "; the panel deletes it when it starts" : ""),
         {}}};
    if (facts.log.damaged > 0) {
        checks.push_back(
            {"log.lines",
             State::note,
             fmt::format("It also holds what is no event and is skipped: {}.", counted(facts.log.damaged, "line")),
             {}});
    }
    if (facts.log.fromTheFuture > 0) {
        checks.push_back({"clock", State::ill,
                          fmt::format("The log holds {} dated later than the clock says.",
                                      counted(facts.log.fromTheFuture, "event")),
                          fmt::format("See whether the clock is right. If it is now, delete {}.", path)});
    }
    return checks;
}

Checks folderCheck(std::string_view name, std::string_view what, const DoctorFacts::File& folder,
                   const DoctorFacts& facts) {
    const auto path = tilde(folder.path, facts.home);
    const std::string key{name};
    if (!folder.exists) {
        return {{key, State::aside, fmt::format("{} {} is not there yet.", what, path), {}}};
    }
    if (!folder.isOurs) {
        return {{key, State::ill, fmt::format("{} {} belongs to another user.", what, path),
                 fmt::format("A command run with sudo may have made it: sudo chown -R $USER {}", path)}};
    }
    if (!folder.isPrivate) {
        return {{key, State::ill, fmt::format("{} {} can be read by others.", what, path),
                 fmt::format("It holds what you ask your agents. Run: chmod 700 {}", path)}};
    }
    if (!folder.obstacle.empty()) {
        return {{key, State::ill, fmt::format("{} {} cannot be written.", what, path),
                 fmt::format("Run: chmod u+rwx {}", path)}};
    }
    return {{key, State::well, fmt::format("{} {} is yours alone.", what, path), {}}};
}

Checks fileChecks(const DoctorFacts& facts) {
    auto checks = logChecks(facts);
    std::ranges::move(folderCheck("folder.data", "The folder", facts.supportFolder, facts), std::back_inserter(checks));
    std::ranges::move(folderCheck("folder.settings", "The settings' folder", facts.configFolder, facts),
                      std::back_inserter(checks));
    const auto path = tilde(facts.settings.path, facts.home);
    if (!facts.areSettingsReadable) {
        checks.push_back({"settings", State::ill, fmt::format("The settings in {} are not valid JSON.", path),
                          "Mend the file. Kippo goes on with what it knew, and moves the file aside when you change a "
                          "setting."});
    } else if (facts.settings.exists) {
        checks.push_back({"settings", State::well, fmt::format("The settings in {} can be read.", path), {}});
    }
    return checks;
}

Checks displayCheck(const DoctorFacts& facts) {
    if (!facts.display) {
        return {{"display", State::aside, "There is no display here; “kippo watch” shows the list in a terminal.", {}}};
    }
    if (facts.displayAnswers == false) {
        return {{"display", State::ill,
                 fmt::format("The display is said to be {}, but nobody answers there.", *facts.display),
                 "The environment names a display that is gone. Start a new terminal in your desktop session."}};
    }
    return {{"display", State::well, fmt::format("There is a display, {}.", *facts.display), {}}};
}

Checks trayCheck(const DoctorFacts& facts) {
    if (!facts.display) {
        return {};
    }
    if (!facts.hasTray) {
        return {{"tray", State::aside, "Whether there is a tray for Kippo's icon cannot be told.", {}}};
    }
    if (!*facts.hasTray) {
        return {{"tray", State::note, "There is no tray for Kippo's icon; the panel does without.",
                 "On GNOME, the extension AppIndicator adds one."}};
    }
    return {{"tray", State::well, "There is a tray for Kippo's icon.", {}}};
}

Checks keyringCheck(const DoctorFacts& facts) {
    if (facts.hasKeyring == true) {
        return {{"keyring", State::well, "A keyring answers.", {}}};
    }
    const std::string remedy = "Install gnome-keyring or KWallet, and run Kippo in a desktop session.";
    if (!facts.hasKeyring && facts.hasBus) {
        return {{"keyring", State::aside, "Whether there is a keyring for passwords cannot be told.", {}}};
    }
    if (facts.needsKeyring) {
        return {
            {"keyring", State::ill, "No keyring answers, so the accounts that you set up have no passwords.", remedy}};
    }
    return {{"keyring", State::aside, "No keyring answers. Mail and revenue accounts would need one.", {}}};
}

Checks watchCheck(const DoctorFacts& facts) {
    if (facts.canWatchFiles) {
        return {{"watching", State::well, "The system tells when files change.", {}}};
    }
    return {{"watching", State::ill, "The system watches no more files for you, so what is new shows late.",
             "Other programs have used up the limit. Run: sudo sysctl fs.inotify.max_user_instances=1024 "
             "fs.inotify.max_user_watches=524288"}};
}

constexpr Checks (*allChecks[])(const DoctorFacts&) = {
    executableCheck, hookCheck, panelCheck, agentChecks, fileChecks, watchCheck, displayCheck, trayCheck, keyringCheck};

} // namespace

std::vector<Check> judge(const DoctorFacts& facts) {
    Checks result;
    for (const auto check : allChecks) {
        std::ranges::move(check(facts), std::back_inserter(result));
    }
    return result;
}

} // namespace kippo::Terminal
