#pragma once

#include "Support/Time.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

/// The files side of counting usage: finding transcripts and reading whole lines out of them.
namespace kippo::UsageFiles {

/// A file as it was found.
struct Found {
    std::string path;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t size = 0;
    Date modified;
};

/// Calls `visit` for every ".jsonl" file below `root`, however deep, in no particular order. Hidden files and folders
/// are left out, links are followed but never in a circle, and what cannot be read is skipped.
void forEach(const std::string& root, const std::function<void(Found file)>& visit);

/// Reads files in blocks and gives out whole lines. One for all files of a thread, because it keeps its memory.
class LineReader {
public:
    /// A longer line is passed over unseen; agents' own longest are some megabytes.
    static constexpr std::size_t longestLine = std::size_t{64} << 20U;

    /// Offsets in a file: behind the last whole line, and behind the last byte that was read.
    struct Reached {
        std::uint64_t line = 0;
        std::uint64_t byte = 0;
    };

    /// Calls `lines(text)` with the whole lines between the offsets, piece by piece; each text ends with a line feed.
    /// Gets no further than `from` when the file cannot be read, and stops between two pieces when `cancelled` is set.
    Reached read(const std::string& path, std::uint64_t from, std::uint64_t to, const std::atomic<bool>& cancelled,
                 const std::function<void(std::string_view text)>& lines);

private:
    /// Makes room for a block behind the `used` bytes.
    void makeRoom(std::size_t used, std::size_t wanted);

    std::unique_ptr<char[]> buffer_;
    std::size_t capacity_ = 0;
};

} // namespace kippo::UsageFiles
