#pragma once

#include "Agents/ProcessScanner.h"

#include <algorithm>

namespace kippo {

/// A process table that the test fills in. `terminated` are the pids that were asked to end, in order.
class FakeProcessLister final : public ProcessLister {
public:
    std::vector<ProcInfo> table;
    std::map<Pid, std::vector<int>> ports;
    std::map<Pid, std::string> cwds;
    std::vector<Pid> terminated;
    int listings = 0;

    std::vector<ProcInfo> processes() override {
        ++listings;
        return table;
    }
    std::map<Pid, std::vector<int>> listeningPorts(std::span<const Pid> wanted) override { return only(ports, wanted); }
    std::map<Pid, std::string> workingDirectories(std::span<const Pid> wanted) override { return only(cwds, wanted); }
    bool terminate(Pid pid, std::uint64_t startTicks) override {
        terminated.push_back(pid);
        return std::ranges::any_of(table, [=](const ProcInfo& proc) {
            return proc.pid == pid && (startTicks == 0 || proc.startTicks == startTicks);
        });
    }

private:
    template <typename Value>
    static std::map<Pid, Value> only(const std::map<Pid, Value>& all, std::span<const Pid> wanted) {
        std::map<Pid, Value> found;
        for (const Pid pid : wanted) {
            if (const auto entry = all.find(pid); entry != all.end()) {
                found.insert(*entry);
            }
        }
        return found;
    }
};

} // namespace kippo
