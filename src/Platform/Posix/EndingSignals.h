#pragma once

#include "Platform/Posix/Descriptor.h"

namespace kippo {

/// Turns the signals by which people and sessions end a program (SIGTERM, SIGINT, SIGHUP) into something to read, so
/// that it ends in good order. The second one of a kind ends it at once: whoever insists is right. One object a
/// process.
class EndingSignals {
public:
    EndingSignals();
    /// From here on they end the program as they always do.
    ~EndingSignals();
    EndingSignals(const EndingSignals&) = delete;
    EndingSignals& operator=(const EndingSignals&) = delete;

    /// Readable once one came; -1 where the system would not give a pipe.
    int descriptor() const { return reading_.get(); }

private:
    Descriptor reading_;
    Descriptor writing_;
};

} // namespace kippo
