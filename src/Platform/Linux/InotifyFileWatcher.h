#pragma once

#include "Platform/Posix/Descriptor.h"
#include "Support/FileWatcher.h"

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kippo {

/// File watching by inotify. Each file is watched itself, also behind a symbolic link, and by its folder, which tells
/// when it is created or another file takes its name. Whoever owns it calls `dispatch` when `descriptor` can be read:
/// PollScheduler or Qt's QSocketNotifier. A file whose folder is missing or was deleted is not watched until the next
/// call of `watch`.
class InotifyFileWatcher final : public FileWatcher {
public:
    InotifyFileWatcher();

    void watch(std::vector<std::string> paths) override;
    void setCallback(std::function<void(const std::string& path)> callback) override;

    /// Readable when something happened; -1 when the system gives no more watchers.
    int descriptor() const { return inotify_.get(); }
    /// Reads all that happened and calls back once for each file concerned.
    void dispatch();

private:
    /// The watched files of a folder by their names in it; two paths may lead to one.
    using PathsByName = std::multimap<std::string, std::string>;

    void follow(const std::string& path);
    void followFile(const std::string& path);
    void forget(const std::string& path);
    void forgetFile(const std::string& path, int keep);
    void take(int watch, std::uint32_t mask, std::string_view name, std::set<std::string>& changed);
    void startAgain();

    Descriptor inotify_;
    std::function<void(const std::string&)> callback_;
    std::set<std::string> paths_;
    std::map<int, PathsByName> folders_;             ///< by watch descriptor
    std::map<int, std::set<std::string>> filePaths_; ///< by watch descriptor
};

} // namespace kippo
