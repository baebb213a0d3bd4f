#pragma once

#include "Agents/ProcessScanner.h"
#include "Platform/Linux/ListeningSockets.h"
#include "Platform/Posix/Descriptor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kippo {

/// One line of /proc/<pid>/stat, as far as it is used.
struct ProcStat {
    std::string comm; ///< the kernel's short name, at most 15 bytes of anything
    char state = '?';
    Pid pid = 0;
    Pid ppid = 0;
    Pid session = 0;
    bool kernelThread = false;
    std::uint64_t cpuTicks = 0;   ///< user and system time
    std::uint64_t startTicks = 0; ///< since boot
    std::int64_t rssPages = 0;
    /// Where the stack and the arguments lie; moves when the process executes another program.
    std::uint64_t image = 0;

    /// Nothing for a line of another shape. The name may hold spaces, line breaks and brackets.
    static std::optional<ProcStat> parse(std::string_view line);
};

/// The process table of a Linux machine, read from /proc; listening ports from the kernel's socket diagnostics. Lists
/// the processes of the user under whom it runs, without kernel threads and zombies. Keeps what it read of each process
/// for the next listing: command lines, the CPU time that a percentage is measured from, the ports, and the opened
/// /proc/<pid>/stat of some hundred processes (at most half of the descriptors that this program may open), as opening
/// costs as much as reading. Owned by whoever takes the snapshots, on one thread.
class ProcProcessLister final : public ProcessLister {
public:
    ProcProcessLister();

    std::vector<ProcInfo> processes() override;
    std::map<Pid, std::vector<int>> listeningPorts(std::span<const Pid> wanted) override;
    /// Also of folders that were deleted under the process, under their former name.
    std::map<Pid, std::string> workingDirectories(std::span<const Pid> wanted) override;
    bool terminate(Pid pid, std::uint64_t startTicks) override;

    /// The unit's name at the end of a /proc/<pid>/cgroup text, such as "foo.service" or "session-2.scope"; empty when
    /// no service manager placed the process.
    static std::string_view unitOf(std::string_view cgroup);
    /// Whether a process without a parent of its own was started to be on its own: as the unit's service, or as the
    /// application that a unit like "app-gnome-code-4711.scope" is named after. `session` is its session's leader.
    static bool isUnitsOwn(std::string_view unit, Pid pid, Pid session);
    /// Whether a /proc/<pid>/status text is of a process in a container or sandbox: one with a pid of its own there.
    static bool isContained(std::string_view status);

private:
    /// The ports of a process as its descriptors told them, and what they were told by.
    struct HeldPorts {
        std::uint64_t image = 0;
        std::int64_t openFiles = 0;
        std::uint64_t socketsVersion = 0;
        double readAt = 0; ///< seconds since boot
        std::vector<int> ports;
    };
    struct Known {
        Descriptor statFile; ///< kept open when there is room; tells nothing once the process has ended
        std::uint64_t startTicks = 0;
        std::uint64_t image = 0;
        std::uint64_t cpuTicks = 0; ///< at `measuredAt`
        double measuredAt = 0;      ///< seconds since boot
        double readAt = 0;          ///< when the command line was read, seconds since boot
        double cpu = 0;
        std::string comm;
        std::string command;
        std::optional<HeldPorts> held;
        unsigned listing = 0; ///< the last listing that saw it
    };

    std::optional<ProcInfo> row(int folder, Pid pid, double now);
    std::optional<ProcStat> statOf(int folder, Pid pid, Descriptor& file) const;
    void keep(Known& known, Descriptor file);
    void refreshCommand(int folder, const ProcStat& stat, Known& known, double now) const;
    void placeUnderManager(int folder, const ProcStat& stat, ProcInfo& proc);
    bool isServiceManager(int folder, Pid pid);
    std::vector<int> portsOf(int folder, Pid pid, double now);

    std::unordered_map<Pid, Known> known_;
    std::unordered_map<Pid, bool> managers_; ///< of this listing
    unsigned listing_ = 0;
    std::size_t room_ = 0; ///< how many more descriptors may be kept
    ListeningSockets::Ports sockets_;
    std::uint64_t socketsVersion_ = 0; ///< counts the changes of `sockets_`
};

} // namespace kippo
