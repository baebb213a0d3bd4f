#pragma once

#include "Support/UrlOpener.h"

namespace kippo {

/// Opens through xdg-open, which knows every desktop's handlers. The program it starts outlives Kippo.
class XdgUrlOpener final : public UrlOpener {
public:
    std::expected<void, Error> open(const std::string& url) override;
};

} // namespace kippo
