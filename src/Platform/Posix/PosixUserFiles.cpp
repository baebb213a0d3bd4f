#include "Platform/Posix/PosixUserFiles.h"

#include "Platform/Posix/AtomicFile.h"
#include "Platform/Posix/Descriptor.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace kippo {

namespace {

UserFiles::Error failure(std::error_code code) { return {code.message()}; }
UserFiles::Error failure(int code) { return failure({code, std::generic_category()}); }

std::expected<void, UserFiles::Error> outcome(std::error_code code) {
    if (code) {
        return std::unexpected{failure(code)};
    }
    return {};
}

} // namespace

std::expected<std::optional<std::string>, UserFiles::Error> PosixUserFiles::read(const std::string& path) {
    // Without waiting: there might be a pipe in the file's place.
    const Descriptor file{open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)};
    if (!file) {
        if (errno == ENOENT) {
            return std::nullopt;
        }
        return std::unexpected{failure(errno)};
    }
    struct stat status{};
    if (fstat(file.get(), &status) != 0) {
        return std::unexpected{failure(errno)};
    }
    if (!S_ISREG(status.st_mode)) {
        return std::unexpected{S_ISDIR(status.st_mode) ? failure(EISDIR) : Error{"Not a regular file"}};
    }
    std::string text;
    std::array<char, 16384> block{};
    for (ssize_t count = 0; (count = ::read(file.get(), block.data(), block.size())) != 0;) {
        if (count < 0 && errno != EINTR) {
            return std::unexpected{failure(errno)};
        }
        text.append(block.data(), static_cast<std::size_t>(count > 0 ? count : 0));
    }
    return text;
}

std::expected<void, UserFiles::Error> PosixUserFiles::write(const std::string& path, std::string_view bytes) {
    return outcome(AtomicFile::write(path, bytes));
}

std::expected<void, UserFiles::Error> PosixUserFiles::copyOnce(const std::string& path, const std::string& copy) {
    AtomicFile::removeLeftBehind(copy);
    struct stat there{};
    if (lstat(copy.c_str(), &there) == 0) {
        return {};
    }
    const auto bytes = read(path);
    if (!bytes) {
        return std::unexpected{bytes.error()};
    }
    if (!*bytes) {
        return std::unexpected{failure(ENOENT)};
    }
    const auto code = AtomicFile::create(copy, **bytes, path);
    return code == std::errc::file_exists ? outcome({}) : outcome(code);
}

} // namespace kippo
