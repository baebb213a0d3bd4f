#pragma once

#include "Support/Places.h"
#include "Support/Time.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdlib.h>
#include <string>
#include <sys/stat.h>

namespace kippo {

/// A home folder of its own for one test, on the real file system; gone with the object. Files are named from the home
/// on, or by their whole path.
class PrivateHome {
public:
    PrivateHome() : PrivateHome(std::filesystem::temp_directory_path()) {}
    explicit PrivateHome(const std::filesystem::path& within) {
        std::string pattern = std::filesystem::canonical(within) / "kippo-home-XXXXXX";
        path_ = mkdtemp(pattern.data());
    }
    ~PrivateHome() { std::filesystem::remove_all(path_); }
    PrivateHome(const PrivateHome&) = delete;
    PrivateHome& operator=(const PrivateHome&) = delete;

    std::string path(const std::string& file = {}) const { return file.empty() ? path_ : path_ / file; }
    Places places() const {
        return {.home = path_,
                .supportFolder = path(".local/share/Kippo"),
                .configFolder = path(".config/Kippo"),
                .dataFolder = path(".local/share"),
                .cacheFolder = path(".cache")};
    }

    /// Writes a whole file, with its folders.
    void write(const std::string& file, const std::string& text) const { put(file, text, std::ios::trunc); }
    void append(const std::string& file, const std::string& text) const { put(file, text, std::ios::app); }
    /// The file's bytes; none when it cannot be read.
    std::string read(const std::string& file) const {
        std::ostringstream text;
        text << std::ifstream{path_ / file, std::ios::binary}.rdbuf();
        return text.str();
    }
    bool exists(const std::string& file) const { return std::filesystem::exists(path_ / file); }
    /// Sets the date at which the file was modified, in whole seconds.
    void age(const std::string& file, Date date) const {
        const timespec then{static_cast<time_t>(unixSeconds(date)), 0};
        const timespec times[2]{then, then};
        utimensat(AT_FDCWD, path(file).c_str(), times, 0);
    }

private:
    void put(const std::string& file, const std::string& text, std::ios::openmode mode) const {
        std::filesystem::create_directories((path_ / file).parent_path());
        std::ofstream{path_ / file, std::ios::binary | mode} << text;
    }

    std::filesystem::path path_;
};

} // namespace kippo
