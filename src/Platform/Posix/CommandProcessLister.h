#pragma once

#include "Agents/ProcessScanner.h"

namespace kippo {

/// The process table as `ps` and `lsof` print it: for platforms without /proc. Three programs run for one snapshot, so
/// it costs some 20 times what ProcProcessLister does. A program that is missing or fails leaves its part empty.
class CommandProcessLister final : public ProcessLister {
public:
    std::vector<ProcInfo> processes() override;
    std::map<Pid, std::vector<int>> listeningPorts(std::span<const Pid> wanted) override;
    std::map<Pid, std::string> workingDirectories(std::span<const Pid> wanted) override;
    bool terminate(Pid pid) override;
};

} // namespace kippo
