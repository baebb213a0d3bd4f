#pragma once

#include "Platform/Posix/Descriptor.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kippo::ProcFile {

/// Up to `limit` bytes of the file `path` below the open folder `folder` (AT_FDCWD for absolute paths); nothing when
/// it cannot be read.
std::optional<std::string> read(int folder, const char* path, std::size_t limit);

/// Opens `path` below `folder` for reading.
Descriptor open(int folder, const char* path);

/// What one read from the start of an open file gives, in `buffer`; empty when it cannot be read. For files of one
/// line; the kernel writes them anew for each read.
std::string_view readOnce(const Descriptor& file, std::span<char> buffer);

} // namespace kippo::ProcFile
