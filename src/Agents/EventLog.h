#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kippo {

/// The reader's end of the event log: hands out whole lines as they are appended by hooks. A line still being written
/// stays for the next read; a log that was deleted or cut short is read again from its start.
class EventLog {
public:
    /// Logs larger than this are deleted when the application starts.
    static constexpr std::uint64_t sizeLimit = 2000000;

    explicit EventLog(std::string path) : path_(std::move(path)) {}

    /// The lines since the last call, without line feeds or empty ones; none when the log cannot be read.
    std::vector<std::string> readLines();
    /// Deletes the log when it has grown beyond `sizeLimit`.
    void trim();

    const std::string& path() const { return path_; }
    /// Up to where lines have been handed out, in bytes.
    std::uint64_t offset() const { return offset_; }

private:
    std::string path_;
    std::uint64_t offset_ = 0;
    std::uint64_t file_ = 0; ///< the inode that `offset_` counts in
};

} // namespace kippo
