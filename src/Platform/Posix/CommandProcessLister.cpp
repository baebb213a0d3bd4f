#include "Platform/Posix/CommandProcessLister.h"

#include <algorithm>
#include <csignal>

namespace kippo {

namespace {

/// `lsof` can hang on a network folder that is gone.
constexpr Seconds patience{10};

constexpr const char* lsof = "/usr/sbin/lsof";

} // namespace

std::string CommandProcessLister::run(const char* path, const std::vector<std::string>& arguments) {
    return runner_.output(path, arguments, patience).value_or(std::string{});
}

std::vector<ProcInfo> CommandProcessLister::processes() {
    return ProcessScanner::parsePs(run("/bin/ps", {"-x", "-o", "pid=,ppid=,rss=,%cpu=,etime=,command="}));
}

std::map<Pid, std::vector<int>> CommandProcessLister::listeningPorts(std::span<const Pid> wanted) {
    if (wanted.empty()) {
        return {};
    }
    auto ports = ProcessScanner::parseListeners(run(lsof, {"-nP", "-iTCP", "-sTCP:LISTEN", "-Fpn"}));
    std::erase_if(ports,
                  [wanted](const auto& entry) { return std::ranges::find(wanted, entry.first) == wanted.end(); });
    return ports;
}

std::map<Pid, std::string> CommandProcessLister::workingDirectories(std::span<const Pid> wanted) {
    std::string pids;
    for (const Pid pid : wanted) {
        pids += (pids.empty() ? "" : ",") + std::to_string(pid);
    }
    if (pids.empty()) {
        return {};
    }
    return ProcessScanner::parseWorkingDirectories(run(lsof, {"-a", "-d", "cwd", "-Fn", "-p", pids}));
}

bool CommandProcessLister::terminate(Pid pid, std::uint64_t /*startTicks*/) {
    return pid > 1 && kill(pid, SIGTERM) == 0;
}

} // namespace kippo
