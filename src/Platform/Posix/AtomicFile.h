#pragma once

#include <string>
#include <string_view>
#include <system_error>

namespace kippo::AtomicFile {

/// Replaces the contents of `path` in one step: a reader sees the old or the new bytes, also after a crash. A symbolic
/// link stays one and the file it leads to is written, also when that is not there yet; a file's mode and owner are
/// kept. A new file gets 0600 and its missing folders 0700. The error when nothing was written; so it is for a file
/// that nobody may write to, although its folder would let it be replaced.
///
/// The bytes are first written to ".NAME.kippo-new-XXXXXX" beside the file. One that a killed process left behind goes
/// with the next write.
std::error_code write(const std::string& path, std::string_view bytes);

/// Writes `bytes` to a new file with the mode and owner of the file at `like`, whole and flushed or not at all. When
/// anything of that name is there already, it stays and `file_exists` is the outcome.
std::error_code create(const std::string& path, std::string_view bytes, const std::string& like);

/// Removes what killed processes left of writing or creating `path`.
void removeLeftBehind(const std::string& path);

/// The file that `path` leads to through symbolic links, whether or not it is there; `path` itself when they go round
/// in a circle.
std::string resolved(const std::string& path);

} // namespace kippo::AtomicFile
