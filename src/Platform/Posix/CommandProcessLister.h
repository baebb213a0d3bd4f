#pragma once

#include "Agents/ProcessScanner.h"
#include "Support/ProcessRunner.h"

namespace kippo {

/// The process table as `ps` and `lsof` print it: for platforms without /proc. Three programs run for one snapshot, so
/// it costs some 20 times what ProcProcessLister does. A program that is missing or fails leaves its part empty.
class CommandProcessLister final : public ProcessLister {
public:
    /// `runner` must outlive the lister.
    explicit CommandProcessLister(ProcessRunner& runner) : runner_(runner) {}

    std::vector<ProcInfo> processes() override;
    std::map<Pid, std::vector<int>> listeningPorts(std::span<const Pid> wanted) override;
    std::map<Pid, std::string> workingDirectories(std::span<const Pid> wanted) override;
    /// Without /proc there is no telling whether the pid has passed to another process.
    bool terminate(Pid pid, std::uint64_t startTicks) override;

private:
    std::string run(const char* path, const std::vector<std::string>& arguments);

    ProcessRunner& runner_;
};

} // namespace kippo
