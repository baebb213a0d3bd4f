#pragma once

#include "Agents/AgentModels.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kippo {

/// Follows the session transcripts that agents write and reduces each recently written one to a State. It reads only
/// the tail of a file, and only when its size changed. Owned by the agent store and called on one thread at a time.
class TranscriptWatcher {
public:
    /// What one transcript says about its session.
    struct State {
        struct Phase {
            enum class Case { needsYou, working, done, interrupted };
            Case value = Case::working;
            std::string sentence; ///< for `needsYou`, what is shown to the user
            bool operator==(const Phase&) const = default;
        };

        /// A call without a result that may be running, or may stand at a question to the user; only the process table
        /// can tell which.
        struct OpenCall {
            Date since;
            std::string sentence; ///< what to say while it waits; empty when it is not certain that there is a call
            bool operator==(const OpenCall&) const = default;
        };

        std::string session;
        AgentKind agent = AgentKind::claude;
        std::optional<std::string> cwd;
        Date lastActivity;
        Phase phase;
        /// When the newest line that set the phase was written; later lines that mean nothing do not move it.
        Date phaseSince;
        std::optional<std::string> summary;
        bool pendingDone = false; ///< the last reply ended its turn; `settleDelay` decides
        std::optional<std::string> markerNeedsYou;
        std::optional<std::int64_t> tokens;
        std::optional<std::string> prompt;
        std::optional<AgentActivity> activity;
        std::optional<OpenCall> openCall;
        std::optional<std::string> entrypoint;
        /// When the session began, where the transcript says so (Codex, Gemini CLI).
        std::optional<Date> startedAt;
        /// The newest line is an API error instead of a reply: its text, one line.
        std::optional<std::string> failure;
        /// A person sits at this session's terminal (true) or it was one headless turn (false); nothing when unknown.
        std::optional<bool> interactive;
        /// A sub-agent's own transcript: never a row of its own.
        bool isSubagent = false;

        bool operator==(const State&) const = default;
    };

    /// How long a finished turn must stay quiet before it counts as done.
    static constexpr Seconds settleDelay{4.0};
    /// Only transcripts written within this span are followed.
    static constexpr Seconds activeWindow{1800.0};
    /// The folders are walked at most this often.
    static constexpr Seconds discoveryInterval{10.0};
    /// At most this many bytes of a file's end are read.
    static constexpr std::uint64_t tailBytes = 160000;

    /// `home` is the user's home folder.
    explicit TranscriptWatcher(std::string home);

    /// Finds new files when it is time to, re-reads those that changed, applies the settle rule, and gives one state
    /// for each file that has one, in no particular order.
    std::vector<State> poll(Date now);

    /// The files followed at present, for a FileWatcher.
    std::vector<std::string> watchedPaths() const;
    /// Makes the next poll walk the folders, whatever the interval says (a hook named a session not yet known).
    void discoverSoon() { lastDiscovery_ = distantPast; }

    using Parser = std::optional<State> (*)(std::span<const std::string_view> lines, std::string_view fallbackID,
                                            Date modified);

    /// Lines in file order to a state; `fallbackID` is the file name without extension, `modified` its date.
    static std::optional<State> parseClaude(std::span<const std::string_view> lines, std::string_view fallbackID,
                                            Date modified);
    static std::optional<State> parseCodex(std::span<const std::string_view> lines, std::string_view fallbackID,
                                           Date modified);
    static std::optional<State> parseGemini(std::span<const std::string_view> lines, std::string_view fallbackID,
                                            Date modified);

    /// White space collapsed; nothing when empty; at most 200 characters, cut with "…".
    static std::optional<std::string> oneLine(std::string_view text);
    /// The text after the last "Done:" line, else the first plain line without markdown emphasis, at most 120
    /// characters.
    static std::optional<std::string> summary(std::optional<std::string_view> text);
    /// The text after the last "Needs you:" line.
    static std::optional<std::string> needsYouMarker(std::optional<std::string_view> text);
    /// An ISO 8601 time with or without fractional seconds.
    static std::optional<Date> date(std::string_view text);

private:
    struct Watched {
        AgentKind agent = AgentKind::claude;
        std::uint64_t size = 0;  ///< when last read
        std::uint64_t inode = 0; ///< when last read: another file of the same size is new
        std::optional<State> state;
        /// What the start of a file says of its session, kept once it has grown beyond the tail (Codex, Gemini CLI).
        std::optional<State> origin;
        /// The folder that Gemini CLI works in, as a file beside its chats says.
        std::optional<std::string> project;
    };
    struct Found;

    void discover(Date now);
    void discoverClaude(Found& found) const;
    void discoverCodex(Found& found) const;
    void discoverGemini(Found& found) const;
    /// Reads the file again if it changed; false when it is gone.
    bool refresh(const std::string& path, Watched& watched);
    std::optional<State> read(const std::string& path, int file, Watched& watched);
    /// The whole lines of the file's end to `lines_`; false when it could not be read.
    bool readTail(int file, const Watched& watched);
    /// Whether a sub-agent of this chat wrote anything since its last reply: the turn goes on.
    static bool subagentWrites(const State& state, const std::string& path);
    /// The folder of a chat, and what earlier reads saw of it.
    static void completeGemini(State& state, const std::string& path, Watched& watched);

    std::map<std::string, Watched> watched_;
    Date lastDiscovery_ = distantPast;
    std::string home_;
    std::string tail_; ///< reused by every read
    std::string cutPatch_;
    std::vector<std::string_view> lines_;
};

} // namespace kippo
