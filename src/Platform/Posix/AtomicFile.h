#pragma once

#include <string>
#include <string_view>
#include <system_error>

namespace kippo::AtomicFile {

/// Replaces the contents of `path` in one step: a reader sees the old or the new bytes, also after a crash. A symbolic
/// link stays one and the file it points to is written; that file's mode and owner are kept. A new file gets 0600 and
/// its missing folders 0700. The error when nothing was written.
std::error_code write(const std::string& path, std::string_view bytes);

/// The file that `path` leads to through symbolic links; `path` itself when nothing is there.
std::string resolved(const std::string& path);

} // namespace kippo::AtomicFile
