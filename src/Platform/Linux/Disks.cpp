#include "Platform/Linux/Disks.h"

#include "Platform/Linux/ProcFile.h"
#include "Support/Text.h"

#include <cstdint>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

namespace kippo::Disks {

namespace {

/// The file system's device, and the mount where the kernel tells it (Linux 5.8): a bind mount has the same device.
using Disk = std::tuple<std::uint32_t, std::uint32_t, std::uint64_t>;

std::optional<Disk> diskOf(const std::string& path) {
    struct statx facts{};
    if (statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT, STATX_MNT_ID, &facts) != 0) {
        return std::nullopt;
    }
    return Disk{facts.stx_dev_major, facts.stx_dev_minor, (facts.stx_mask & STATX_MNT_ID) ? facts.stx_mnt_id : 0};
}

std::string above(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

/// The table spells a space "\040", and a few others alike.
std::string decoded(std::string_view field) {
    std::string text;
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size()) {
            text += static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 + (field[i + 3] - '0'));
            i += 3;
        } else {
            text += field[i];
        }
    }
    return text;
}

} // namespace

bool areOne(const std::string& path, const std::string& other) {
    const auto disk = diskOf(path);
    return disk && disk == diskOf(other);
}

std::string root(std::string folder) {
    while (folder != "/" && areOne(folder, above(folder))) {
        folder = above(folder);
    }
    return folder;
}

std::string nearest(std::string path) {
    while (path != "/" && access(path.c_str(), F_OK) != 0) {
        path = above(path);
    }
    return path;
}

bool isMountedAtOrBelow(std::string_view path, std::string_view mountTable) {
    for (const std::string_view line : Text::split(mountTable, '\n')) {
        const auto fields = Text::split(line, ' '); // mount id, parent id, device, root, mount point, …
        const std::string point = fields.size() > 4 ? decoded(fields[4]) : std::string{};
        if (point.starts_with(path) && (point.size() == path.size() || point[path.size()] == '/')) {
            return true;
        }
    }
    return false;
}

bool isMountedAtOrBelow(const std::string& path) {
    constexpr std::size_t limit = 16U << 20;
    return isMountedAtOrBelow(path, ProcFile::read(AT_FDCWD, "/proc/self/mountinfo", limit).value_or(std::string{}));
}

} // namespace kippo::Disks
