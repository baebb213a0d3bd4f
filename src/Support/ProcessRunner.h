#pragma once

#include "Support/Time.h"

#include <optional>
#include <span>
#include <string>

namespace kippo {

/// Runs other programs for what they print. Abstract so that what reads their output is tested without them; the real
/// one is PosixProcessRunner.
class ProcessRunner {
public:
    virtual ~ProcessRunner() = default;
    /// Runs the program at `path`, or where there is none the one of that name on the user's PATH, and gives what it
    /// wrote to standard output; its standard error is discarded. Nothing when it cannot be started or has not ended
    /// after `patience`. The exit status does not matter. Blocking; from any thread.
    virtual std::optional<std::string> output(const std::string& path, std::span<const std::string> arguments,
                                              Seconds patience) = 0;
};

} // namespace kippo
