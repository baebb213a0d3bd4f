#include "Platform/Linux/ProcFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace kippo::ProcFile {

namespace {

ssize_t readSome(int descriptor, std::span<char> buffer) {
    for (;;) {
        const ssize_t got = ::read(descriptor, buffer.data(), buffer.size());
        if (got >= 0 || errno != EINTR) {
            return got;
        }
    }
}

} // namespace

Descriptor open(int folder, const char* path) {
    return Descriptor{openat(folder, path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)};
}

std::string_view readOnce(const Descriptor& file, std::span<char> buffer) {
    for (;;) {
        const ssize_t got = pread(file.get(), buffer.data(), buffer.size(), 0);
        if (got >= 0 || errno != EINTR) {
            return {buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0))};
        }
    }
}

std::optional<std::string> read(int folder, const char* path, std::size_t limit) {
    const Descriptor file = open(folder, path);
    if (!file) {
        return std::nullopt;
    }
    constexpr std::size_t block = 1024;
    std::string text;
    while (text.size() < limit) {
        const std::size_t had = text.size();
        text.resize(std::min(limit, std::max(block, had * 2)));
        const ssize_t got = readSome(file.get(), std::span{text}.subspan(had));
        text.resize(had + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        if (got < 0) {
            return std::nullopt;
        }
        if (got == 0) {
            break;
        }
    }
    return text;
}

} // namespace kippo::ProcFile
