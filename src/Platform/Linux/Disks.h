#pragma once

#include <string>
#include <string_view>

/// Which disk a path is on. A disk here is what a rename does not leave: a file system at one place where it is
/// mounted.
namespace kippo::Disks {

/// Whether both existing paths are on one disk.
bool areOne(const std::string& path, const std::string& other);
/// The topmost folder of the disk on which `folder` is (existing, absolute, without symbolic links).
std::string root(std::string folder);
/// `path`, or the closest existing folder above it.
std::string nearest(std::string path);
/// Whether a disk is mounted at `path` (absolute, without symbolic links) or anywhere inside it.
bool isMountedAtOrBelow(const std::string& path);
/// As that, by the text of /proc/self/mountinfo.
bool isMountedAtOrBelow(std::string_view path, std::string_view mountTable);

} // namespace kippo::Disks
