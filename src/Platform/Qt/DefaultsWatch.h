#pragma once

#include "Platform/Linux/InotifyFileWatcher.h"
#include "Support/Scheduler.h"

#include <QSocketNotifier>
#include <optional>

namespace kippo {

class JsonUserDefaults;

/// Takes up what the person writes into the file of the settings while the application runs: when the file tells, and
/// once a minute for folders that do not (a network's).
class DefaultsWatch {
public:
    /// `defaults`, whose file is at `path`, and `scheduler` must outlive this.
    DefaultsWatch(JsonUserDefaults& defaults, const std::string& path, Scheduler& scheduler);
    DefaultsWatch(const DefaultsWatch&) = delete;
    DefaultsWatch& operator=(const DefaultsWatch&) = delete;

private:
    InotifyFileWatcher files_;
    std::optional<QSocketNotifier> ready_;
    Timer soon_;
    Timer atLeast_;
};

} // namespace kippo
