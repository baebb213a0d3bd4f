#include "Platform/Posix/AtomicFile.h"

#include "Platform/Posix/Descriptor.h"
#include "Support/Folders.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kippo::AtomicFile {

namespace {

constexpr std::string_view temporarySuffix = ".kippo-new-";
constexpr std::size_t randomCharacters = 6;
/// As many links in a row as the kernel follows.
constexpr int mostLinks = 40;

std::error_code lastError() { return {errno, std::generic_category()}; }

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written > 0 ? written : 0));
    }
    return true;
}

/// Gives a file the mode and owner of another one. The owner first, for a change of owner clears bits of the mode.
bool takeAfter(int descriptor, const struct stat& other) {
    struct stat own{};
    return fstat(descriptor, &own) == 0 &&
           ((own.st_uid == other.st_uid && own.st_gid == other.st_gid) ||
            fchown(descriptor, other.st_uid, other.st_gid) == 0) &&
           fchmod(descriptor, other.st_mode & 07777) == 0;
}

/// Whether the file may be written to, whoever asks: one without any write permission is meant to stay as it is.
bool isWritable(const std::string& path, const struct stat& file) {
    if ((file.st_mode & 0222) == 0) {
        errno = EACCES;
        return false;
    }
    return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

/// Where `link` leads; empty when it is no link.
std::string linkTarget(const std::string& link) {
    std::string target(PATH_MAX, '\0');
    const ssize_t length = readlink(link.c_str(), target.data(), target.size());
    target.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return target.empty() || target.starts_with('/') ? target : folderOf(link) + "/" + target;
}

/// A file to be, beside its destination. It is locked as long as its writer lives, which tells it from one that was
/// left behind.
class Temporary {
public:
    explicit Temporary(const std::string& destination) : folder_(folderOf(destination)) {
        const auto name = folder_ + "/." + nameOf(destination) + std::string{temporarySuffix};
        // Between its creation and its lock somebody may take it for one left behind.
        do {
            path_ = name + std::string(randomCharacters, 'X');
            file_ = Descriptor{mkostemp(path_.data(), O_CLOEXEC)};
        } while (file_ && isLost());
    }
    ~Temporary() {
        if (file_ && !path_.empty()) {
            unlink(path_.c_str());
        }
    }
    Temporary(const Temporary&) = delete;
    Temporary& operator=(const Temporary&) = delete;

    bool fill(std::string_view bytes, const struct stat* like) const {
        return file_ && (like == nullptr || takeAfter(file_.get(), *like)) && writeAll(file_.get(), bytes) &&
               fsync(file_.get()) == 0;
    }
    /// Takes the place of `destination`.
    bool replace(const std::string& destination) {
        if (rename(path_.c_str(), destination.c_str()) != 0) {
            return false;
        }
        path_.clear();
        flushFolder();
        return true;
    }
    /// Becomes `destination`, which must not be there.
    bool become(const std::string& destination) {
        if (link(path_.c_str(), destination.c_str()) == 0) {
            if (unlink(path_.c_str()) == 0) {
                path_.clear();
            }
            flushFolder();
            return true;
        }
        // Some file systems know no second names.
        struct stat there{};
        const bool canLink = errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS && errno != EMLINK;
        if (canLink || lstat(destination.c_str(), &there) == 0) {
            errno = canLink ? errno : EEXIST;
            return false;
        }
        return replace(destination);
    }

private:
    /// Somebody else is removing it, or has done so.
    bool isLost() const {
        struct stat file{};
        return (flock(file_.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) ||
               (fstat(file_.get(), &file) == 0 && file.st_nlink == 0);
    }

    void flushFolder() const {
        const Descriptor folder{open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
        static_cast<void>(fsync(folder.get())); // some file systems cannot; the file itself is there
    }

    std::string folder_;
    std::string path_; ///< empty once it bears another name
    Descriptor file_;
};

bool isTemporary(std::string_view name, std::string_view destination) {
    const auto tail = temporarySuffix.size() + randomCharacters;
    return name.size() == 1 + destination.size() + tail && name.starts_with('.') &&
           name.substr(1).starts_with(destination) && name.substr(name.size() - tail).starts_with(temporarySuffix);
}

} // namespace

void removeLeftBehind(const std::string& path) {
    const auto folder = folderOf(path);
    const auto name = nameOf(path);
    const std::unique_ptr<DIR, int (*)(DIR*)> entries{opendir(folder.c_str()), closedir};
    while (const dirent* entry = entries ? readdir(entries.get()) : nullptr) {
        if (!isTemporary(entry->d_name, name)) {
            continue;
        }
        const auto left = folder + "/" + entry->d_name;
        const Descriptor file{open(left.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK)};
        if (file && flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
            unlink(left.c_str());
        }
    }
}

std::string resolved(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real{realpath(path.c_str(), nullptr), std::free};
    if (real) {
        return real.get();
    }
    // Links to a file that is not there yet.
    std::string end = path;
    for (int links = 0; links < mostLinks; ++links) {
        const auto next = linkTarget(end);
        if (next.empty()) {
            return end;
        }
        end = next;
    }
    return path;
}

std::error_code write(const std::string& path, std::string_view bytes) {
    const std::string target = resolved(path);
    struct stat old{};
    const bool exists = stat(target.c_str(), &old) == 0;
    if (exists ? !isWritable(target, old) : errno != ENOENT) {
        return lastError();
    }
    if (!exists) {
        makeFolders(folderOf(target));
    }
    removeLeftBehind(target);
    Temporary file{target};
    return file.fill(bytes, exists ? &old : nullptr) && file.replace(target) ? std::error_code{} : lastError();
}

std::error_code create(const std::string& path, std::string_view bytes, const std::string& like) {
    struct stat other{};
    if (lstat(path.c_str(), &other) == 0) {
        return std::make_error_code(std::errc::file_exists);
    }
    if (stat(like.c_str(), &other) != 0) {
        return lastError();
    }
    Temporary file{path};
    return file.fill(bytes, &other) && file.become(path) ? std::error_code{} : lastError();
}

} // namespace kippo::AtomicFile
