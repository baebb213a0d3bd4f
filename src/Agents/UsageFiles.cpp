#include "Agents/UsageFiles.h"

#include "Support/ByteSearch.h"
#include "Support/InputFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <set>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace kippo::UsageFiles {

namespace {

constexpr std::string_view extension = ".jsonl";

/// Small enough that a block is still in the processor's cache when its bytes are looked at.
constexpr std::size_t blockBytes = std::size_t{256} << 10U;

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

class Walk {
public:
    explicit Walk(const std::function<void(Found file)>& visit) : visit_(visit) {}

    void run(const std::string& root) {
        folders_.push_back(root);
        while (!folders_.empty()) {
            const std::string folder = std::move(folders_.back());
            folders_.pop_back();
            enter(folder);
        }
    }

private:
    void enter(const std::string& path) {
        const std::unique_ptr<DIR, CloseFolder> folder{::opendir(path.c_str())};
        struct stat info{};
        if (!folder || ::fstat(::dirfd(folder.get()), &info) != 0 || !seen_.emplace(info.st_dev, info.st_ino).second) {
            return;
        }
        while (const dirent* const entry = ::readdir(folder.get())) {
            if (entry->d_name[0] != '.') {
                consider(path, ::dirfd(folder.get()), *entry);
            }
        }
    }

    void consider(const std::string& folder, int descriptor, const dirent& entry) {
        const std::string_view name = entry.d_name;
        const bool isTranscript = name.ends_with(extension);
        if (entry.d_type == DT_DIR) {
            folders_.push_back(folder + "/" + entry.d_name);
            return;
        }
        // Only links and what the file system does not tell apart may still be a folder.
        if (!isTranscript && entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) {
            return;
        }
        struct stat info{};
        if (::fstatat(descriptor, entry.d_name, &info, 0) != 0) {
            return;
        }
        if (S_ISDIR(info.st_mode)) {
            folders_.push_back(folder + "/" + entry.d_name);
        } else if (S_ISREG(info.st_mode) && isTranscript) {
            visit_({.path = folder + "/" + entry.d_name,
                    .device = static_cast<std::uint64_t>(info.st_dev),
                    .inode = static_cast<std::uint64_t>(info.st_ino),
                    .size = static_cast<std::uint64_t>(info.st_size),
                    .modified = modified(info)});
        }
    }

    const std::function<void(Found file)>& visit_;
    std::vector<std::string> folders_;
    std::set<std::pair<dev_t, ino_t>> seen_;
};

/// The number of bytes read at `offset`; 0 at the end and on failure.
std::size_t readAt(const InputFile& file, std::uint64_t offset, char* into, std::size_t size) {
    for (;;) {
        const auto got = ::pread(file.descriptor(), into, size, static_cast<off_t>(offset));
        if (got >= 0 || errno != EINTR) {
            return static_cast<std::size_t>(std::max<ssize_t>(got, 0));
        }
    }
}

} // namespace

void forEach(const std::string& root, const std::function<void(Found file)>& visit) { Walk{visit}.run(root); }

void LineReader::makeRoom(std::size_t used, std::size_t wanted) {
    if (capacity_ - used >= wanted) {
        return;
    }
    capacity_ = std::max(capacity_ * 2, used + wanted);
    auto larger = std::make_unique_for_overwrite<char[]>(capacity_);
    if (used > 0) {
        std::memcpy(larger.get(), buffer_.get(), used);
    }
    buffer_ = std::move(larger);
}

LineReader::Reached LineReader::read(const std::string& path, std::uint64_t from, std::uint64_t to,
                                     const std::atomic<bool>& cancelled,
                                     const std::function<void(std::string_view text)>& lines) {
    const InputFile file{path};
    Reached reached{.line = from, .byte = from};
    std::size_t used = 0; // bytes of a line that has not ended yet
    bool passing = false; // within a line that is too long
    while (reached.byte < to && !cancelled.load(std::memory_order_relaxed)) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(blockBytes, to - reached.byte));
        makeRoom(used, wanted);
        const std::size_t got = readAt(file, reached.byte, buffer_.get() + used, wanted);
        if (got == 0) {
            break;
        }
        reached.byte += got;
        const std::size_t feed = findLast({buffer_.get() + used, got}, '\n');
        if (feed == ByteSearch::npos) {
            passing = passing || used + got > longestLine;
            used = passing ? 0 : used + got;
            continue;
        }
        std::string_view whole{buffer_.get(), used + feed + 1};
        used += got - whole.size();
        reached.line = reached.byte - used;
        const std::string_view rest{whole.data() + whole.size(), used};
        if (passing) {
            whole.remove_prefix(whole.find('\n') + 1);
            passing = false;
        }
        if (!whole.empty()) {
            lines(whole);
        }
        std::memmove(buffer_.get(), rest.data(), rest.size());
    }
    return reached;
}

} // namespace kippo::UsageFiles
