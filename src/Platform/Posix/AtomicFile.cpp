#include "Platform/Posix/AtomicFile.h"

#include "Platform/Posix/Descriptor.h"
#include "Support/Folders.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace kippo::AtomicFile {

namespace {

std::error_code lastError() { return {errno, std::generic_category()}; }

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

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

/// The mode and owner of the file that is replaced; another's group or owner may not be ours to give.
bool takeAfter(int descriptor, const std::string& target) {
    struct stat old{};
    if (stat(target.c_str(), &old) != 0) {
        return true;
    }
    if (old.st_uid != geteuid() || old.st_gid != getegid()) {
        static_cast<void>(!fchown(descriptor, old.st_uid, old.st_gid));
    }
    return fchmod(descriptor, old.st_mode & 07777) == 0;
}

} // namespace

std::string resolved(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real{realpath(path.c_str(), nullptr), std::free};
    if (real) {
        return real.get();
    }
    // A link to a file that is not there yet.
    std::string target(PATH_MAX, '\0');
    const ssize_t length = readlink(path.c_str(), target.data(), target.size());
    if (length <= 0) {
        return path;
    }
    target.resize(static_cast<std::size_t>(length));
    return target.starts_with('/') ? target : folderOf(path) + "/" + target;
}

std::error_code write(const std::string& path, std::string_view bytes) {
    const std::string target = resolved(path);
    makeFolders(folderOf(target));
    std::string temporary = target + ".XXXXXX";
    const Descriptor file{mkostemp(temporary.data(), O_CLOEXEC)};
    if (!file) {
        return lastError();
    }
    if (takeAfter(file.get(), target) && writeAll(file.get(), bytes) && fsync(file.get()) == 0 &&
        rename(temporary.c_str(), target.c_str()) == 0) {
        const Descriptor folder{open(folderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
        static_cast<void>(fsync(folder.get())); // some file systems cannot; the rename itself has happened
        return {};
    }
    const auto error = lastError();
    unlink(temporary.c_str());
    return error;
}

} // namespace kippo::AtomicFile
