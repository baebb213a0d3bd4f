#pragma once

#include "Support/Desktop.h"

namespace kippo {

/// The desktop's file manager and clipboard through Qt.
class QtDesktop final : public Desktop {
public:
    void openFolder(const std::string& path) override;
    void copy(const std::string& text) override;
};

} // namespace kippo
