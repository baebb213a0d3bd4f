#pragma once

#include "Platform/Posix/Descriptor.h"
#include "Support/ProcessRunner.h"

#include <mutex>
#include <vector>

namespace kippo {

/// Child processes. They read nothing, print their numbers in the C locale's form, and do not outlive this program: not
/// an orderly end (`stop`), and on Linux not a crash either. Owned by the composition root, which calls `stop` before
/// it waits for the threads that may be inside `output`.
class PosixProcessRunner final : public ProcessRunner {
public:
    /// Of what a program prints, more is cut off.
    static constexpr std::size_t outputLimit = 16U << 20;

    PosixProcessRunner();
    ~PosixProcessRunner() override;
    PosixProcessRunner(const PosixProcessRunner&) = delete;
    PosixProcessRunner& operator=(const PosixProcessRunner&) = delete;

    std::optional<std::string> output(const std::string& path, std::span<const std::string> arguments,
                                      Seconds patience) override;
    /// Kills what runs and starts nothing any more: every `output`, present and future, gives nothing. From any thread.
    void stop();

private:
    void reap(int pid);

    Descriptor stopped_; ///< readable for good after `stop`
    Descriptor stop_;
    std::mutex mutex_;
    std::vector<int>
        unreaped_; ///< killed, but stuck in the kernel (a network folder that is gone); guarded by `mutex_`
};

} // namespace kippo
