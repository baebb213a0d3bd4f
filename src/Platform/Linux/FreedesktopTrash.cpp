#include "Platform/Linux/FreedesktopTrash.h"

#include "Platform/Linux/Disks.h"
#include "Platform/Posix/Descriptor.h"
#include "Support/Folders.h"
#include "Support/Text.h"

#include <array>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <fmt/format.h>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace kippo {

namespace {

constexpr mode_t onlyMine = 0700;

/// Room in a file's name of 255 bytes for a number and the record's ending.
constexpr std::size_t longestName = 220;

/// One Trash folder, opened.
struct TrashFolder {
    std::string path;
    std::string root; ///< of its disk, with a slash at the end; paths are relative to it. Empty for the user's own.
    Descriptor files;
    Descriptor info;
};

std::string reason(int error) { return std::strerror(error); }

Trash::Error notMoved(std::string_view path, std::string_view why) {
    return {
        fmt::format("“{}” could not be moved to the Trash: {}.", Text::validUtf8(Text::lastPathComponent(path)), why)};
}

Trash::Error notPutBack(std::string_view path, std::string_view why) {
    return {fmt::format("“{}” could not be put back: {}.", Text::validUtf8(Text::lastPathComponent(path)), why)};
}

std::pair<std::string, std::string> folderAndName(const std::string& path) {
    const auto slash = path.rfind('/');
    return {slash == 0 ? "/" : path.substr(0, slash), path.substr(slash + 1)};
}

/// Without links above its last part, which may be one; nothing when the folder that holds it is not there.
std::optional<std::string> placeOf(std::string path) {
    while (path.size() > 1 && path.ends_with('/')) {
        path.pop_back();
    }
    if (!path.starts_with('/')) {
        return std::nullopt;
    }
    const auto [folder, name] = folderAndName(path);
    const std::unique_ptr<char, decltype(&std::free)> real{realpath(folder.c_str(), nullptr), std::free};
    if (!real || name.empty() || name == "." || name == "..") {
        return std::nullopt;
    }
    return (std::string_view{real.get()} == "/" ? std::string{} : std::string{real.get()}) + "/" + name;
}

/// A folder of the user's that is no link, made when it is not there.
Descriptor openOwn(int parent, const char* name) {
    mkdirat(parent, name, onlyMine);
    Descriptor folder{openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)};
    struct stat there{};
    if (folder && (fstat(folder.get(), &there) != 0 || there.st_uid != geteuid())) {
        errno = EPERM;
        return {};
    }
    return folder;
}

std::expected<TrashFolder, int> opened(std::string path, std::string root, const Descriptor& folder) {
    TrashFolder trash{.path = std::move(path), .root = std::move(root), .files = {}, .info = {}};
    if (folder) {
        trash.files = openOwn(folder.get(), "files");
    }
    if (trash.files) {
        trash.info = openOwn(folder.get(), "info");
    }
    return trash.info ? std::expected<TrashFolder, int>{std::move(trash)} : std::unexpected{errno};
}

/// The Trash at the root of a disk: in a folder for everybody that the administrator made, or else the user's own.
std::expected<TrashFolder, int> onDisk(const std::string& root) {
    const std::string slashed = root == "/" ? root : root + "/";
    const std::string user = std::to_string(geteuid());
    const Descriptor top{open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    const Descriptor shared{openat(top.get(), ".Trash", O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)};
    struct stat there{};
    if (shared && fstat(shared.get(), &there) == 0 && (there.st_mode & S_ISVTX)) {
        if (auto trash = opened(slashed + ".Trash/" + user, slashed, openOwn(shared.get(), user.c_str()))) {
            return trash;
        }
    }
    const std::string name = ".Trash-" + user;
    return opened(slashed + name, slashed, openOwn(top.get(), name.c_str()));
}

std::expected<TrashFolder, int> inHome(const std::string& path) {
    makeFolders(path);
    return opened(path, {}, Descriptor{open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)});
}

/// The Trash for what lies in `folder`.
std::expected<TrashFolder, int> trashFor(const std::string& folder, const std::string& home) {
    if (Disks::areOne(folder, Disks::nearest(home))) {
        return inHome(home);
    }
    return onDisk(Disks::root(folder));
}

/// What the Trash's record of a thing says, without the date.
std::string recordHead(const TrashFolder& trash, const std::string& original) {
    const std::string_view below = std::string_view{original}.substr(trash.root.size());
    return "[Trash Info]\nPath=" + FreedesktopTrash::encoded(below) + "\n";
}

std::string localTime() {
    const time_t now = time(nullptr);
    tm parts{};
    localtime_r(&now, &parts);
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
                       parts.tm_hour, parts.tm_min, parts.tm_sec);
}

/// `name`, `name.2`, …, short enough for a file's name; cut between characters.
std::string numbered(std::string name, int number) {
    if (name.size() > longestName) {
        std::size_t end = longestName;
        while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U) {
            --end;
        }
        name.resize(end);
    }
    return number == 1 ? name : fmt::format("{}.{}", name, number);
}

/// Renames unless something has the new name already. 0, or the error.
int renameUnlessTaken(int fromFolder, const char* from, int toFolder, const char* to) {
    constexpr unsigned noReplace = 1;
    if (syscall(SYS_renameat2, fromFolder, from, toFolder, to, noReplace) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return errno;
    }
    // A file system that cannot look and rename in one step.
    struct stat there{};
    if (fstatat(toFolder, to, &there, AT_SYMLINK_NOFOLLOW) == 0) {
        return EEXIST;
    }
    return renameat(fromFolder, from, toFolder, to) == 0 ? 0 : errno;
}

bool writeRecord(int folder, const char* name, const std::string& text) {
    const Descriptor file{openat(folder, name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600)};
    if (!file) {
        return false;
    }
    if (write(file.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size())) {
        return true;
    }
    const int error = errno;
    unlinkat(folder, name, 0);
    errno = error == EEXIST || error == 0 ? EIO : error;
    return false;
}

/// Moves `original` into an opened Trash under the first name that is free; where it is then, or the error.
std::expected<std::string, int> moveInto(const TrashFolder& trash, const std::string& original) {
    constexpr int manyTries = 10000;
    const std::string text = recordHead(trash, original) + "DeletionDate=" + localTime() + "\n";
    for (int number = 1; number < manyTries; ++number) {
        const std::string name = numbered(folderAndName(original).second, number);
        const std::string record = name + ".trashinfo";
        if (!writeRecord(trash.info.get(), record.c_str(), text)) {
            if (errno == EEXIST) {
                continue;
            }
            return std::unexpected{errno};
        }
        const int error = renameUnlessTaken(AT_FDCWD, original.c_str(), trash.files.get(), name.c_str());
        if (error == 0) {
            return trash.path + "/files/" + name;
        }
        unlinkat(trash.info.get(), record.c_str(), 0);
        if (error != EEXIST && error != ENOTEMPTY) {
            return std::unexpected{error};
        }
    }
    return std::unexpected{EEXIST};
}

std::string readAll(const std::string& path) {
    const Descriptor file{open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC)};
    std::array<char, 16384> buffer{};
    const ssize_t got = read(file.get(), buffer.data(), buffer.size());
    return {buffer.data(), static_cast<std::size_t>(got > 0 ? got : 0)};
}

/// Whether a record in the Trash is about `original`, by its whole path or by one relative to the disk's root.
bool isAbout(std::string_view record, const std::string& original) {
    const auto start = record.find("\nPath=");
    if (start == std::string_view::npos) {
        return false;
    }
    std::string_view path = record.substr(start + 6);
    path = path.substr(0, path.find('\n'));
    const std::string whole = FreedesktopTrash::encoded(original);
    return !path.empty() && (path == whole || whole.ends_with("/" + std::string{path}));
}

/// Makes what lacks of `folder`, as the user's programs would.
void makeUsualFolders(const std::string& folder) {
    for (auto slash = folder.find('/', 1); slash != std::string::npos; slash = folder.find('/', slash + 1)) {
        mkdir(folder.substr(0, slash).c_str(), 0777);
    }
    mkdir(folder.c_str(), 0777);
}

} // namespace

std::string FreedesktopTrash::encoded(std::string_view path) {
    constexpr std::string_view unreserved = "-_.~/";
    std::string text;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80 && (std::isalnum(byte) || unreserved.contains(c))) {
            text += c;
        } else {
            text += fmt::format("%{:02X}", byte);
        }
    }
    return text;
}

std::expected<Trash::Receipt, Trash::Error> FreedesktopTrash::moveToTrash(const std::string& path) {
    const auto place = placeOf(path);
    struct stat there{};
    if (!place || lstat(place->c_str(), &there) != 0) {
        return std::unexpected{notMoved(path, "it is not there")};
    }
    if (Disks::isMountedAtOrBelow(*place)) {
        return std::unexpected{notMoved(path, "a disk is mounted there")};
    }
    const auto trash = trashFor(folderAndName(*place).first, home_);
    if (!trash) {
        return std::unexpected{
            notMoved(path, "its disk has no Trash that you may use (" + reason(trash.error()) + ")")};
    }
    auto trashed = moveInto(*trash, *place);
    if (!trashed) {
        return std::unexpected{notMoved(path, reason(trashed.error()))};
    }
    return Receipt{.original = *place, .trashed = std::move(*trashed)};
}

std::expected<void, Trash::Error> FreedesktopTrash::putBack(const Receipt& receipt) {
    constexpr std::string_view files = "/files";
    const auto [folder, name] = folderAndName(receipt.trashed);
    struct stat there{};
    std::string record = folder;
    if (record.ends_with(files)) {
        record.replace(record.size() - files.size(), files.size(), "/info/" + name + ".trashinfo");
    }
    if (lstat(receipt.trashed.c_str(), &there) != 0 || !isAbout(readAll(record), receipt.original)) {
        return std::unexpected{notPutBack(receipt.original, "it is not in the Trash any more")};
    }
    makeUsualFolders(folderAndName(receipt.original).first);
    const int error = renameUnlessTaken(AT_FDCWD, receipt.trashed.c_str(), AT_FDCWD, receipt.original.c_str());
    if (error != 0) {
        return std::unexpected{
            notPutBack(receipt.original, error == EEXIST ? "there is something else in its place" : reason(error))};
    }
    unlink(record.c_str());
    return {};
}

} // namespace kippo
