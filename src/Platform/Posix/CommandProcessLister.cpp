#include "Platform/Posix/CommandProcessLister.h"

#include "Platform/Posix/ChildProgram.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <initializer_list>
#include <unistd.h>

namespace kippo {

namespace {

/// `lsof` can hang on a network folder that is gone.
constexpr std::chrono::seconds patience{10};

std::string run(std::initializer_list<const char*> places, const std::vector<std::string>& arguments) {
    for (const char* path : places) {
        if (access(path, X_OK) == 0) {
            return ChildProgram::output(path, arguments, patience).value_or(std::string{});
        }
    }
    return {};
}

std::string runLsof(const std::vector<std::string>& arguments) {
    return run({"/usr/sbin/lsof", "/usr/bin/lsof", "/usr/local/sbin/lsof", "/usr/local/bin/lsof"}, arguments);
}

} // namespace

std::vector<ProcInfo> CommandProcessLister::processes() {
    return ProcessScanner::parsePs(
        run({"/bin/ps", "/usr/bin/ps"}, {"-x", "-o", "pid=,ppid=,rss=,%cpu=,etime=,command="}));
}

std::map<Pid, std::vector<int>> CommandProcessLister::listeningPorts(std::span<const Pid> wanted) {
    if (wanted.empty()) {
        return {};
    }
    auto ports = ProcessScanner::parseListeners(runLsof({"-nP", "-iTCP", "-sTCP:LISTEN", "-Fpn"}));
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
    return ProcessScanner::parseWorkingDirectories(runLsof({"-a", "-d", "cwd", "-Fn", "-p", pids}));
}

bool CommandProcessLister::terminate(Pid pid) { return pid > 1 && kill(pid, SIGTERM) == 0; }

} // namespace kippo
