#include "Platform/Linux/ProcProcessLister.h"

#include "Platform/Linux/ProcFile.h"
#include "Support/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <csignal>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <memory>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace kippo {

namespace {

/// Longer command lines than anyone looks at: what follows is a prompt or a class path.
constexpr std::size_t commandLimit = 16384;

/// Programs write their title over their arguments, mostly just after the start.
constexpr double settlesAfter = 3.0;
constexpr double titleKeepsFor = 30.0;

/// The kernel counts CPU time in steps of 10 ms; over less than this a percentage would be noise.
constexpr double shortestInterval = 0.5;

/// A process that hands a listening socket on, closes its own and opens something else instead looks as before.
constexpr double portsKeepFor = 120.0;

/// Numbers stay well below 1024, which is as far as `select` in other people's libraries can count.
constexpr rlim_t keptDescriptors = 768;

double ticksPerSecond() {
    static const double ticks = static_cast<double>(sysconf(_SC_CLK_TCK));
    return ticks;
}

std::int64_t pageKB() {
    static const std::int64_t size = sysconf(_SC_PAGESIZE) / 1024;
    return size;
}

double secondsSinceBoot() {
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

template <typename Number> std::optional<Number> number(std::string_view text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional{value} : std::nullopt;
}

/// The numbered folders of /proc, ascending, and a descriptor of /proc itself.
struct ProcFolder {
    std::unique_ptr<DIR, int (*)(DIR*)> folder{opendir("/proc"), closedir};

    int descriptor() const { return folder ? dirfd(folder.get()) : -1; }
    std::vector<Pid> pids() const {
        std::vector<Pid> found;
        while (const dirent* entry = folder ? readdir(folder.get()) : nullptr) {
            if (const auto pid = number<Pid>(entry->d_name); pid && *pid > 0) {
                found.push_back(*pid);
            }
        }
        return found;
    }
};

using Path = std::array<char, 40>;

Path pathOf(Pid pid, std::string_view file) {
    Path path{};
    fmt::format_to_n(path.data(), path.size() - 1, "{}{}", pid, file);
    return path;
}

std::optional<ProcStat> readStat(const Descriptor& file) {
    std::array<char, 2048> buffer;
    return file ? ProcStat::parse(ProcFile::readOnce(file, buffer)) : std::nullopt;
}

Descriptor openStat(int folder, Pid pid) { return ProcFile::open(folder, pathOf(pid, "/stat").data()); }

/// Whether the process runs as the user who asks. Its folder belongs to its effective user, whatever it hides of
/// itself.
bool isOwn(int folder, Pid pid) {
    struct stat owner{};
    return fstatat(folder, pathOf(pid, "").data(), &owner, 0) == 0 && owner.st_uid == geteuid();
}

/// The arguments with spaces between them, fit to be shown: line breaks and other control characters are spaces too.
std::string commandOf(int folder, const ProcStat& stat) {
    std::array<char, commandLimit> buffer; // the kernel fills it in one read
    const Descriptor file = ProcFile::open(folder, pathOf(stat.pid, "/cmdline").data());
    std::string text{file ? ProcFile::readOnce(file, buffer) : std::string_view{}};
    std::ranges::replace_if(text, [](char c) { return (c >= 0 && c < ' ') || c == '\x7f'; }, ' ');
    const std::string_view words = Text::trimmed(text);
    return Text::validUtf8(words.empty() ? "[" + stat.comm + "]" : words);
}

/// The path that a link of /proc leads to, in `buffer`; empty when it cannot be read.
std::string_view linkTarget(int folder, const char* path, std::span<char> buffer) {
    const ssize_t length = readlinkat(folder, path, buffer.data(), buffer.size());
    return {buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
}

/// How many files a process has open; nothing where the kernel does not tell (before Linux 6.2).
std::optional<std::int64_t> openFiles(int folder, Pid pid) {
    struct stat descriptors{};
    const bool told = fstatat(folder, pathOf(pid, "/fd").data(), &descriptors, 0) == 0 && descriptors.st_size > 0;
    return told ? std::optional<std::int64_t>{descriptors.st_size} : std::nullopt;
}

/// The ports of the listening sockets among the descriptors of a process, ascending, each once.
std::vector<int> findPorts(int proc, Pid pid, const ListeningSockets::Ports& sockets) {
    std::vector<int> ports;
    const int opened = openat(proc, pathOf(pid, "/fd").data(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, int (*)(DIR*)> folder{opened >= 0 ? fdopendir(opened) : nullptr, closedir};
    while (const dirent* entry = folder ? readdir(folder.get()) : nullptr) {
        if (entry->d_name[0] == '.') {
            continue;
        }
        constexpr std::string_view prefix = "socket:[";
        std::array<char, 64> buffer;
        std::string_view link = linkTarget(opened, entry->d_name, buffer);
        if (!link.starts_with(prefix) || !link.ends_with(']')) {
            continue;
        }
        link = link.substr(prefix.size(), link.size() - prefix.size() - 1);
        const auto inode = number<std::uint64_t>(link);
        if (const auto socket = inode ? sockets.find(*inode) : sockets.end(); socket != sockets.end()) {
            ports.push_back(socket->second);
        }
    }
    std::ranges::sort(ports);
    const auto doubled = std::ranges::unique(ports);
    ports.erase(doubled.begin(), doubled.end());
    return ports;
}

/// Units that hold a whole desktop application or login with everything that was started in it, so that a process in
/// one may well have been left behind: terminals that the desktop starts as a service, and remote shells.
bool holdsUserPrograms(std::string_view unit) {
    return unit.starts_with("app-") || unit.starts_with("gnome-terminal-server") || unit.starts_with("ssh") ||
           unit.starts_with("user@");
}

} // namespace

std::optional<ProcStat> ProcStat::parse(std::string_view line) {
    const auto open = line.find('(');
    const auto close = line.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open) {
        return std::nullopt;
    }
    // Field 3, the state, is the first after the name; proc_pid_stat(5) numbers them so.
    std::array<std::string_view, 47> fields{};
    std::string_view rest = Text::trimmed(line.substr(close + 1));
    for (std::size_t i = 0; i < fields.size() && !rest.empty(); ++i) {
        fields[i] = rest.substr(0, rest.find(' '));
        rest.remove_prefix(std::min(rest.size(), fields[i].size() + 1));
    }
    const auto field = [&](std::size_t at) { return fields[at - 3]; };
    const auto pid = number<Pid>(Text::trimmed(line.substr(0, open)));
    const auto ppid = number<Pid>(field(4));
    const auto flags = number<std::uint64_t>(field(9));
    const auto user = number<std::uint64_t>(field(14));
    const auto system = number<std::uint64_t>(field(15));
    const auto start = number<std::uint64_t>(field(22));
    const auto rss = number<std::int64_t>(field(24));
    if (!pid || !ppid || !flags || !user || !system || !start || !rss || field(3).size() != 1) {
        return std::nullopt;
    }
    constexpr std::uint64_t kernelThreadFlag = 0x00200000;
    const auto at = [&](std::size_t index) { return number<std::uint64_t>(field(index)).value_or(0); };
    return ProcStat{.comm = std::string{line.substr(open + 1, close - open - 1)},
                    .state = field(3)[0],
                    .pid = *pid,
                    .ppid = *ppid,
                    .session = number<Pid>(field(6)).value_or(0),
                    .kernelThread = (*flags & kernelThreadFlag) != 0,
                    .cpuTicks = *user + *system,
                    .startTicks = *start,
                    .rssPages = *rss,
                    .image = at(28) ^ (at(48) << 1U) ^ (at(49) << 2U)};
}

ProcProcessLister::ProcProcessLister() {
    rlimit files{};
    if (getrlimit(RLIMIT_NOFILE, &files) == 0) {
        room_ = std::min(files.rlim_cur / 2, keptDescriptors);
    }
}

std::vector<ProcInfo> ProcProcessLister::processes() {
    const ProcFolder proc;
    const double now = secondsSinceBoot();
    ++listing_;
    managers_.clear();
    std::vector<ProcInfo> rows;
    for (const Pid pid : proc.pids()) {
        if (auto found = row(proc.descriptor(), pid, now)) {
            rows.push_back(std::move(*found));
        }
    }
    std::erase_if(known_, [this](const auto& entry) {
        const bool gone = entry.second.listing != listing_;
        room_ += gone && entry.second.statFile ? 1 : 0;
        return gone;
    });
    return rows;
}

/// Reads the kept file of a process, or else opens it: then `file` holds it. A kept file never speaks of a later
/// process of the same number.
std::optional<ProcStat> ProcProcessLister::statOf(int folder, Pid pid, Descriptor& file) const {
    if (const auto listed = known_.find(pid); listed != known_.end() && listed->second.statFile) {
        if (auto stat = readStat(listed->second.statFile)) {
            return stat;
        }
    }
    file = openStat(folder, pid);
    return readStat(file);
}

void ProcProcessLister::keep(Known& known, Descriptor file) {
    if (!file || (!known.statFile && room_ == 0)) {
        return;
    }
    room_ -= known.statFile ? 0 : 1;
    known.statFile = std::move(file);
}

std::optional<ProcInfo> ProcProcessLister::row(int folder, Pid pid, double now) {
    // Whose it is can change only when it executes another program, so a process that was listed is not asked again.
    const auto listed = known_.find(pid);
    if (listed == known_.end() && !isOwn(folder, pid)) {
        return std::nullopt;
    }
    Descriptor opened;
    const auto stat = statOf(folder, pid, opened);
    if (!stat || stat->kernelThread || stat->state == 'Z' || stat->state == 'X') {
        return std::nullopt;
    }
    if (listed != known_.end() &&
        (listed->second.startTicks != stat->startTicks || listed->second.image != stat->image) && !isOwn(folder, pid)) {
        return std::nullopt;
    }
    const double uptime = std::max(0.0, now - static_cast<double>(stat->startTicks) / ticksPerSecond());
    Known& known = known_[pid];
    keep(known, std::move(opened));
    if (known.listing == 0 || known.startTicks != stat->startTicks) {
        known.held.reset();
        known.startTicks = stat->startTicks;
        known.readAt = -titleKeepsFor;
        known.measuredAt = now;
        known.cpuTicks = stat->cpuTicks;
        known.cpu = 100.0 * static_cast<double>(stat->cpuTicks) / ticksPerSecond() / std::max(uptime, 0.1);
    } else if (now - known.measuredAt >= shortestInterval) {
        const auto spent = static_cast<double>(stat->cpuTicks - std::min(known.cpuTicks, stat->cpuTicks));
        known.cpu = 100.0 * spent / ticksPerSecond() / (now - known.measuredAt);
        known.cpuTicks = stat->cpuTicks;
        known.measuredAt = now;
    }
    known.listing = listing_;
    refreshCommand(folder, *stat, known, now);
    ProcInfo proc{.pid = pid,
                  .ppid = stat->ppid,
                  .rssKB = stat->rssPages * pageKB(),
                  .cpu = known.cpu,
                  .uptime = uptime,
                  .command = known.command,
                  .startTicks = stat->startTicks};
    placeUnderManager(folder, *stat, proc);
    return proc;
}

void ProcProcessLister::refreshCommand(int folder, const ProcStat& stat, Known& known, double now) const {
    const double startedAt = static_cast<double>(stat.startTicks) / ticksPerSecond();
    const bool settled = known.readAt - startedAt > settlesAfter && now - known.readAt < titleKeepsFor;
    if (settled && known.comm == stat.comm && known.image == stat.image) {
        return;
    }
    known.command = commandOf(folder, stat);
    known.comm = stat.comm;
    known.image = stat.image;
    known.readAt = now;
}

/// Tells who has the process now: its starter, or the system, because the starter ended; and whether as a service.
void ProcProcessLister::placeUnderManager(int folder, const ProcStat& stat, ProcInfo& proc) {
    if (stat.ppid != 1 && !isServiceManager(folder, stat.ppid)) {
        return;
    }
    proc.adopted = true;
    if (!proc.isDevTool()) {
        return; // it is never shown as left behind, so its unit need not be read
    }
    constexpr std::size_t limit = 8192;
    const auto cgroup = ProcFile::read(folder, pathOf(stat.pid, "/cgroup").data(), limit).value_or(std::string{});
    const auto status = ProcFile::read(folder, pathOf(stat.pid, "/status").data(), limit).value_or(std::string{});
    proc.isService = isUnitsOwn(unitOf(cgroup), stat.pid, stat.session) || isContained(status);
    proc.adopted = !proc.isService;
}

bool ProcProcessLister::isServiceManager(int folder, Pid pid) {
    const auto [entry, isNew] = managers_.try_emplace(pid, false);
    if (isNew) {
        constexpr std::array<std::string_view, 9> names{"systemd",   "init", "dinit",     "runsvdir",   "s6-svscan",
                                                        "dumb-init", "tini", "catatonit", "docker-init"};
        // Parents come before their children in the table, so most have been read by now.
        std::string name;
        if (const auto listed = known_.find(pid); listed != known_.end() && listed->second.listing == listing_) {
            name = listed->second.comm;
        } else if (const auto stat = readStat(openStat(folder, pid))) {
            name = stat->comm;
        }
        entry->second = std::ranges::find(names, name) != names.end();
    }
    return entry->second;
}

std::string_view ProcProcessLister::unitOf(std::string_view cgroup) {
    for (const std::string_view line : Text::split(cgroup, '\n')) {
        if (!line.starts_with("0::") && !line.contains(":name=systemd:")) {
            continue;
        }
        const auto parts = Text::split(line.substr(line.rfind(':') + 1), '/');
        for (auto part = parts.rbegin(); part != parts.rend(); ++part) {
            if (part->ends_with(".service") || part->ends_with(".scope")) {
                return *part;
            }
        }
    }
    return {};
}

bool ProcProcessLister::isUnitsOwn(std::string_view unit, Pid pid, Pid session) {
    if (unit.ends_with(".service")) {
        // A service's own process leads its session, what a shell in it started does not.
        return !holdsUserPrograms(unit) || session == pid;
    }
    return unit.starts_with("app-") && unit.ends_with(fmt::format("-{}.scope", pid));
}

bool ProcProcessLister::isContained(std::string_view status) {
    constexpr std::string_view field = "\nNSpid:";
    const auto start = status.find(field);
    if (start == std::string_view::npos) {
        return false;
    }
    const std::string_view pids = status.substr(start + field.size());
    return Text::split(pids.substr(0, pids.find('\n')), '\t').size() > 1;
}

std::map<Pid, std::vector<int>> ProcProcessLister::listeningPorts(std::span<const Pid> wanted) {
    std::map<Pid, std::vector<int>> found;
    if (wanted.empty()) {
        return found;
    }
    if (auto sockets = ListeningSockets::read(); sockets != sockets_) {
        sockets_ = std::move(sockets);
        ++socketsVersion_;
    }
    if (sockets_.empty()) {
        return found;
    }
    const Descriptor folder{open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    const double now = secondsSinceBoot();
    for (const Pid pid : wanted) {
        if (auto ports = portsOf(folder.get(), pid, now); !ports.empty()) {
            found.emplace(pid, std::move(ports));
        }
    }
    return found;
}

/// A process comes to listen, or ceases to, by executing another program, by a change among all listening sockets, or
/// by taking or closing a descriptor that another process has too. While none of that shows, its ports are as before.
std::vector<int> ProcProcessLister::portsOf(int folder, Pid pid, double now) {
    // Counted before they are read, so that a descriptor that comes in between is found the next time.
    const auto open = openFiles(folder, pid);
    const auto listed = known_.find(pid);
    if (listed == known_.end() || !open) {
        return findPorts(folder, pid, sockets_);
    }
    Known& known = listed->second;
    if (!known.held || known.held->image != known.image || known.held->openFiles != *open ||
        known.held->socketsVersion != socketsVersion_ || now - known.held->readAt > portsKeepFor) {
        known.held = HeldPorts{.image = known.image,
                               .openFiles = *open,
                               .socketsVersion = socketsVersion_,
                               .readAt = now,
                               .ports = findPorts(folder, pid, sockets_)};
    }
    return known.held->ports;
}

std::map<Pid, std::string> ProcProcessLister::workingDirectories(std::span<const Pid> wanted) {
    constexpr std::string_view deleted = " (deleted)";
    std::map<Pid, std::string> found;
    const Descriptor proc{open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    std::array<char, PATH_MAX> buffer;
    for (const Pid pid : wanted) {
        std::string folder{linkTarget(proc.get(), pathOf(pid, "/cwd").data(), buffer)};
        if (struct stat there{}; folder.ends_with(deleted) && stat(folder.c_str(), &there) != 0) {
            folder.resize(folder.size() - deleted.size());
        }
        if (folder.starts_with('/')) {
            found.emplace(pid, Text::validUtf8(folder));
        }
    }
    return found;
}

bool ProcProcessLister::terminate(Pid pid, std::uint64_t startTicks) {
    if (pid <= 1) {
        return false;
    }
    // Holds on to the process, so that the pid cannot pass on between the look and the signal (Linux 5.3).
    const Descriptor process{static_cast<int>(syscall(SYS_pidfd_open, pid, 0))};
    if (startTicks != 0) {
        const ProcFolder proc;
        const auto stat = readStat(openStat(proc.descriptor(), pid));
        if (!stat || stat->startTicks != startTicks) {
            return false;
        }
    }
    if (process) {
        return syscall(SYS_pidfd_send_signal, process.get(), SIGTERM, nullptr, 0) == 0;
    }
    return kill(pid, SIGTERM) == 0;
}

} // namespace kippo
