#pragma once

#include "Support/Desktop.h"

#include <vector>

namespace kippo {

/// A desktop that remembers what it was asked for.
class FakeDesktop final : public Desktop {
public:
    void openFolder(const std::string& path) override { opened.push_back(path); }
    void copy(const std::string& text) override { clipboard = text; }

    std::vector<std::string> opened; ///< folders
    std::string clipboard;
};

} // namespace kippo
