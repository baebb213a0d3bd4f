#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace kippo {

/// Files that belong to the user and that Kippo edits on request: agents' settings and instructions. Abstract so that
/// every way of failing is tested; the real one is PosixUserFiles.
class UserFiles {
public:
    struct Error {
        std::string reason; ///< the system's own words, such as "Permission denied"
    };

    virtual ~UserFiles() = default;
    /// The whole file, through symbolic links; nothing when there is none.
    virtual std::expected<std::optional<std::string>, Error> read(const std::string& path) = 0;
    /// Replaces the contents in one step and flushes them to the disk: whoever reads sees the old or the new bytes,
    /// also after a crash. Symbolic links stay, also one that points nowhere yet; mode and owner stay. Missing folders
    /// are made. On an error the old file stands.
    virtual std::expected<void, Error> write(const std::string& path, std::string_view bytes) = 0;
    /// Copies the file to `copy`, whole and flushed, unless something is there already.
    virtual std::expected<void, Error> copyOnce(const std::string& path, const std::string& copy) = 0;
};

} // namespace kippo
