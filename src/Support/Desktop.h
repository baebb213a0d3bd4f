#pragma once

#include <string>

namespace kippo {

/// The desktop's file manager and clipboard. Abstract because each platform reaches them in its own way and tests must
/// start no program; the real one is QtDesktop. All of it is a favour: where the desktop has none, nothing happens.
class Desktop {
public:
    virtual ~Desktop() = default;
    /// Shows a folder in the file manager; `path` is absolute. Whatever is no folder is left alone, so that a
    /// stranger's path never starts a program.
    virtual void openFolder(const std::string& path) = 0;
    /// Puts a text on the clipboard.
    virtual void copy(const std::string& text) = 0;
};

} // namespace kippo
