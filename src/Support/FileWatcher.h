#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kippo {

/// Wakes the program when a file is written, created or replaced, so that it need not wait for the next poll. A wake-up
/// may be missing (a network folder, no watches left): every user keeps a slow poll as the floor. Abstract because the
/// real one, InotifyFileWatcher, is Linux's.
class FileWatcher {
public:
    virtual ~FileWatcher() = default;
    /// Replaces the set of watched files. A path need not exist yet as long as its folder does.
    virtual void watch(std::vector<std::string> paths) = 0;
    /// Called on the main queue with the path as given to `watch`; bursts are joined into one call per path.
    virtual void setCallback(std::function<void(const std::string& path)> callback) = 0;
};

} // namespace kippo
