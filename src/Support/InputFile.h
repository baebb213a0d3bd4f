#pragma once

#include "Support/Time.h"

#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace kippo {

/// A file of another program, open for reading; it closes itself.
class InputFile {
public:
    // O_NONBLOCK so that a pipe that took the file's place cannot hold the program up.
    explicit InputFile(const std::string& path)
        : descriptor_(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY)) {}
    ~InputFile() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// Below 0 when the file could not be opened.
    int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

/// When a file was last written.
inline Date modified(const struct stat& info) {
#ifdef __APPLE__
    const auto& time = info.st_mtimespec;
#else
    const auto& time = info.st_mtim;
#endif
    return dateFromUnix(static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9);
}

} // namespace kippo
