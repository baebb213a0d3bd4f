#include "Agents/EventLog.h"

#include "Support/InputFile.h"
#include "Support/Text.h"

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace kippo {

namespace {

/// The bytes from `offset` to the end of the file; shorter when the file shrinks meanwhile.
std::string readFrom(int descriptor, std::uint64_t offset, std::uint64_t size) {
    std::string bytes(size - offset, '\0');
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const auto count =
            pread(descriptor, bytes.data() + filled, bytes.size() - filled, static_cast<off_t>(offset + filled));
        if (count <= 0) {
            break;
        }
        filled += static_cast<std::size_t>(count);
    }
    bytes.resize(filled);
    return bytes;
}

} // namespace

std::vector<std::string> EventLog::readLines() {
    struct stat info{};
    if (stat(path_.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) {
        return {};
    }
    const auto size = static_cast<std::uint64_t>(info.st_size);
    if (size < offset_ || info.st_ino != file_) {
        offset_ = 0;
        file_ = info.st_ino;
    }
    if (size == offset_) {
        return {};
    }
    const InputFile file{path_};
    if (file.descriptor() < 0) {
        return {};
    }
    const std::string bytes = readFrom(file.descriptor(), offset_, size);
    const auto end = bytes.rfind('\n');
    if (end == std::string::npos) {
        return {};
    }
    offset_ += end + 1;
    std::vector<std::string> lines;
    for (const std::string_view line : Text::split(std::string_view{bytes}.substr(0, end), '\n')) {
        lines.emplace_back(line);
    }
    return lines;
}

void EventLog::trim() {
    struct stat info{};
    if (stat(path_.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
        static_cast<std::uint64_t>(info.st_size) > sizeLimit) {
        std::remove(path_.c_str());
    }
}

} // namespace kippo
