#pragma once

#include <expected>
#include <string>

namespace kippo {

/// Opens pages and letters in the programs that the person has for them. Abstract so that tests see what would be
/// opened; the real one is XdgUrlOpener.
class UrlOpener {
public:
    struct Error {
        std::string sentence; ///< for the person, such as "This address cannot be opened: xdg-open is not installed."
    };

    virtual ~UrlOpener() = default;
    /// Hands an http, https or mailto URL, percent-encoded, to the desktop and returns without waiting for the program.
    /// Any other is refused: URLs may come from strangers.
    virtual std::expected<void, Error> open(const std::string& url) = 0;
};

} // namespace kippo
