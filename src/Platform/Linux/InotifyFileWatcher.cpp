#include "Platform/Linux/InotifyFileWatcher.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <sys/inotify.h>
#include <unistd.h>
#include <utility>

namespace kippo {

namespace {

constexpr std::uint32_t fileMask = IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_MASK_ADD;
/// Only names: writes to the folder's other files are nobody's business.
constexpr std::uint32_t folderMask =
    IN_CREATE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_MASK_ADD;

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

} // namespace

InotifyFileWatcher::InotifyFileWatcher() : inotify_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {}

void InotifyFileWatcher::setCallback(std::function<void(const std::string& path)> callback) {
    callback_ = std::move(callback);
}

void InotifyFileWatcher::watch(std::vector<std::string> paths) {
    std::set<std::string> wanted{paths.begin(), paths.end()};
    wanted.erase("");
    for (const auto& path : paths_) {
        if (!wanted.contains(path)) {
            forget(path);
        }
    }
    paths_ = std::move(wanted);
    for (const auto& path : paths_) {
        follow(path); // again too: its folder may exist by now
    }
}

void InotifyFileWatcher::follow(const std::string& path) {
    const int watch = inotify_add_watch(inotify_.get(), folderOf(path).c_str(), folderMask);
    if (watch >= 0) {
        auto& known = folders_[watch];
        const auto [first, last] = known.equal_range(nameOf(path));
        if (std::ranges::none_of(first, last, [&](const auto& entry) { return entry.second == path; })) {
            known.emplace(nameOf(path), path);
        }
    }
    followFile(path);
}

void InotifyFileWatcher::followFile(const std::string& path) {
    const int watch = inotify_add_watch(inotify_.get(), path.c_str(), fileMask);
    forgetFile(path, watch);
    if (watch >= 0) {
        filePaths_[watch].insert(path);
    }
}

/// Drops the file's watches but `keep`; the file may have been replaced by another.
void InotifyFileWatcher::forgetFile(const std::string& path, int keep) {
    for (auto file = filePaths_.begin(); file != filePaths_.end();) {
        if (file->first != keep && file->second.erase(path) > 0 && file->second.empty()) {
            inotify_rm_watch(inotify_.get(), file->first);
            file = filePaths_.erase(file);
        } else {
            ++file;
        }
    }
}

void InotifyFileWatcher::forget(const std::string& path) {
    forgetFile(path, -1);
    for (auto folder = folders_.begin(); folder != folders_.end();) {
        auto& known = folder->second;
        std::erase_if(known, [&](const auto& named) { return named.second == path; });
        if (known.empty()) {
            inotify_rm_watch(inotify_.get(), folder->first);
            folder = folders_.erase(folder);
        } else {
            ++folder;
        }
    }
}

void InotifyFileWatcher::dispatch() {
    std::set<std::string> changed;
    // The kernel asks for room for at least one event with the longest name.
    alignas(inotify_event) std::array<char, 16384> buffer;
    for (;;) {
        const ssize_t got = read(inotify_.get(), buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            break;
        }
        std::string_view bytes{buffer.data(), static_cast<std::size_t>(got)};
        while (bytes.size() >= sizeof(inotify_event)) {
            inotify_event event;
            std::memcpy(&event, bytes.data(), sizeof event);
            const std::string_view padded = bytes.substr(sizeof event, event.len);
            take(event.wd, event.mask, padded.substr(0, padded.find('\0')), changed);
            bytes.remove_prefix(std::min(bytes.size(), sizeof event + event.len));
        }
    }
    const auto callback = callback_;
    for (const auto& path : changed) {
        if (callback && paths_.contains(path)) {
            callback(path);
        }
    }
}

void InotifyFileWatcher::take(int watch, std::uint32_t mask, std::string_view name, std::set<std::string>& changed) {
    if (mask & IN_Q_OVERFLOW) {
        startAgain();
        changed.insert(paths_.begin(), paths_.end());
        return;
    }
    if (const auto folder = folders_.find(watch); folder != folders_.end()) {
        if (mask & IN_IGNORED) {
            folders_.erase(folder);
            return;
        }
        const auto named = folder->second;
        const auto [first, last] = named.equal_range(std::string{name});
        for (auto entry = first; entry != last; ++entry) {
            followFile(entry->second);
            changed.insert(entry->second);
        }
        return;
    }
    if (const auto file = filePaths_.find(watch); file != filePaths_.end()) {
        const auto paths = file->second;
        if (mask & IN_IGNORED) {
            filePaths_.erase(file);
        }
        changed.insert(paths.begin(), paths.end());
        if (mask & (IN_IGNORED | IN_ATTRIB | IN_MOVE_SELF | IN_DELETE_SELF)) {
            // Another file may have taken its place, also behind a symbolic link.
            std::ranges::for_each(paths, [this](const std::string& path) { followFile(path); });
        }
    }
}

/// After events were lost nothing is known of the watches either.
void InotifyFileWatcher::startAgain() {
    const auto paths = paths_;
    for (const auto& path : paths) {
        forget(path);
    }
    for (const auto& path : paths) {
        follow(path);
    }
}

} // namespace kippo
