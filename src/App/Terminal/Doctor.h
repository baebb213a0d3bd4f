#pragma once

#include "App/Terminal/HookFacts.h"
#include "App/Terminal/HookProbe.h"
#include "App/Terminal/LogFacts.h"
#include "App/Terminal/TextTable.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kippo::Terminal {

/// Everything that `kippo doctor` judges, gathered in one place so that the judging touches nothing.
struct DoctorFacts {
    /// Whether Codex was told to trust Kippo's hooks.
    enum class CodexTrust {
        unknown,
        trusted,
        untrusted, ///< not all entries were reviewed
        changed,   ///< reviewed, but not as they are now
        disabled   ///< switched off one by one
    };
    /// One agent: its hooks, and what may keep them from working.
    struct Agent {
        HookFacts hooks;
        std::string version;                   ///< empty when it cannot be told without running the agent
        bool areHooksOff = false;              ///< its own settings switch all hooks off
        std::string otherHome;                 ///< the folder in which it looks for its settings instead of the usual
        std::optional<Date> settingsWritten;   ///< when its settings file was written last
        std::optional<Date> transcriptWritten; ///< when it last worked, by its transcripts
        std::string unreadableTranscripts;     ///< the folder of its transcripts, when it cannot be read
    };
    /// A file or folder of Kippo's own.
    struct File {
        std::string path;
        bool exists = false;
        bool isOurs = true;    ///< owned by this user
        bool isPrivate = true; ///< nobody else may read it
        std::string obstacle;  ///< what keeps it from being written or made: it, or the nearest folder that is there
        std::int64_t size = 0;
    };

    Date now;
    std::string home;
    std::string executable;
    bool isInBuildTree = false;
    bool hasApplication = false;
    std::optional<Pid> applicationPID; ///< when the panel runs
    std::optional<HookProbe> hook;
    std::vector<Agent> agents;
    CodexTrust codexTrust = CodexTrust::unknown;
    LogFacts log;
    File logFile;
    File supportFolder;
    File configFolder;
    File settings;                   ///< defaults.json
    bool areSettingsReadable = true; ///< a JSON object, or not there yet
    bool isDiskFull = false;         ///< where the log is
    bool needsKeyring = false;       ///< the user has set up an account whose password it keeps
    std::optional<std::string> display;
    std::optional<bool> displayAnswers;
    bool hasBus = false;
    std::optional<bool> hasTray; ///< nothing where the bus could not be asked
    std::optional<bool> hasKeyring;
    bool canWatchFiles = true;
};

/// Looks at this machine. Starts the hook and, where there is a message bus, a program that asks it.
DoctorFacts gatherFacts();

/// One thing that was looked at.
struct Check {
    enum class State {
        well,
        aside, ///< not here, and nobody has to mind
        note,  ///< works, though something about it is worth knowing
        ill
    };

    std::string id; ///< for scripts: "hooks.claude"
    State state = State::well;
    std::string sentence;
    std::string remedy; ///< what to do about it; may be empty unless `ill`

    bool operator==(const Check&) const = default;
};

/// All checks, in the order in which a person reads them.
std::vector<Check> judge(const DoctorFacts& facts);

/// The checks for a person, and a sentence that sums them up.
std::string doctorText(const std::vector<Check>& checks, const Style& style);

/// The same as one JSON object on one line, without line feed. docs/terminal.md describes its keys.
std::string doctorJson(const std::vector<Check>& checks);

} // namespace kippo::Terminal
