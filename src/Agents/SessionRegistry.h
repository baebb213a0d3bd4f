#pragma once

#include "Agents/AgentModels.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kippo {

/// One entry of Claude Code's session registry, `~/.claude/sessions/<pid>.json`: it ties a session to its process and,
/// in a terminal, tells what the session is doing.
struct RegistryEntry {
    enum class Status { unknown, idle, busy, waiting };

    Pid pid = 0;
    std::string session;
    std::optional<std::string> cwd;
    std::optional<std::string> entrypoint;
    std::uint64_t procStart = 0; ///< clock ticks since boot, as in /proc/<pid>/stat; 0 when not given
    Status status = Status::unknown;
    std::optional<std::string> waitingFor; ///< such as "permission prompt"
    std::optional<Date> statusUpdatedAt;

    bool operator==(const RegistryEntry&) const = default;
};

/// Reads Claude Code's session registry. Entries stay behind after a kill: whoever uses one must check that the process
/// with that pid and start time runs.
namespace SessionRegistry {

/// No entry is this large; a larger file is something else.
inline constexpr std::size_t maxBytes = 65536;

/// All readable entries below `home`, by pid; files that are damaged, too large or of another shape are skipped.
std::vector<RegistryEntry> read(const std::string& home);
/// One file's text.
std::optional<RegistryEntry> parse(std::string_view json);

} // namespace SessionRegistry

/// Reads the registry again and again, at the cost of one look at each file that has not changed. Owned by whoever
/// polls, and called on one thread at a time.
class SessionRegistryReader {
public:
    /// `home` is the user's home folder.
    explicit SessionRegistryReader(const std::string& home) : folder_(home + "/.claude/sessions") {}

    /// The entries as they are now, by pid, as `SessionRegistry::read` gives them.
    std::vector<RegistryEntry> poll();

private:
    /// What tells one content of a file from another. Claude Code replaces or rewrites the whole file.
    struct Stamp {
        std::int64_t seconds = 0;
        std::int64_t nanoseconds = 0;
        std::int64_t size = 0;
        std::uint64_t inode = 0;
        bool operator==(const Stamp&) const = default;
    };
    struct Known {
        Stamp stamp;
        bool settled = false; ///< read at least twice with this stamp
        std::optional<RegistryEntry> entry;
    };
    static std::optional<RegistryEntry> readFile(int folder, const char* name);

    std::string folder_;
    std::map<std::string, Known, std::less<>> known_;
};

} // namespace kippo
