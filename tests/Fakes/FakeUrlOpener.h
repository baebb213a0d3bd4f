#pragma once

#include "Support/UrlOpener.h"

#include <vector>

namespace kippo {

/// Opens nothing; `opened` is what would have been.
class FakeUrlOpener final : public UrlOpener {
public:
    std::vector<std::string> opened;

    std::expected<void, Error> open(const std::string& url) override {
        if (!url.starts_with("http://") && !url.starts_with("https://") && !url.starts_with("mailto:")) {
            return std::unexpected{Error{"This address cannot be opened: it is neither a web page nor a letter."}};
        }
        opened.push_back(url);
        return {};
    }
};

} // namespace kippo
