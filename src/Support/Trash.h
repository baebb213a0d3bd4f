#pragma once

#include <expected>
#include <string>

namespace kippo {

/// The desktop's Trash, out of which the user can take things back. Abstract because each platform has its own and
/// tests must not fill it; the real one is FreedesktopTrash.
class Trash {
public:
    /// What came of a move, and all that `putBack` needs.
    struct Receipt {
        std::string original; ///< where it was, absolute
        std::string trashed;  ///< where it is now

        bool operator==(const Receipt&) const = default;
    };
    struct Error {
        std::string sentence; ///< for the user: what could not be moved, and why
    };

    virtual ~Trash() = default;
    /// Moves a file or folder, whole, to the Trash of its own disk. On an error it is where it was.
    virtual std::expected<Receipt, Error> moveToTrash(const std::string& path) = 0;
    /// Undoes that. An error when something else has taken the place, or the Trash was emptied.
    virtual std::expected<void, Error> putBack(const Receipt& receipt) = 0;
};

} // namespace kippo
