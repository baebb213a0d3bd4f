#pragma once

#include "Support/UserFiles.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace kippo {

/// Files in memory. Writes and copies that really happen are recorded; any path can be made to fail.
class FakeUserFiles final : public UserFiles {
public:
    std::map<std::string, std::string> files;
    std::set<std::string> unreadable; ///< reading fails: "Permission denied"
    std::set<std::string> full;       ///< writing fails: "No space left on device"
    std::vector<std::string> written; ///< the paths of writes and copies, in their order

    std::expected<std::optional<std::string>, Error> read(const std::string& path) override {
        if (unreadable.contains(path)) {
            return std::unexpected{Error{"Permission denied"}};
        }
        const auto found = files.find(path);
        return found == files.end() ? std::nullopt : std::optional{found->second};
    }
    std::expected<void, Error> write(const std::string& path, std::string_view bytes) override {
        if (full.contains(path)) {
            return std::unexpected{Error{"No space left on device"}};
        }
        files[path] = bytes;
        written.push_back(path);
        return {};
    }
    std::expected<void, Error> copyOnce(const std::string& path, const std::string& copy) override {
        if (files.contains(copy)) {
            return {};
        }
        const auto bytes = read(path);
        if (!bytes || !*bytes) {
            return std::unexpected{bytes ? Error{"No such file or directory"} : bytes.error()};
        }
        return write(copy, **bytes);
    }
};

} // namespace kippo
