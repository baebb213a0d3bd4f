#pragma once

#include "Support/Trash.h"

#include <string>

namespace kippo {

/// The Trash that the desktop's file managers share (freedesktop.org Trash specification 1.0): the user's own, and on
/// other disks the one at their root. Things are renamed, never copied. Keeps nothing, so any thread may use it.
class FreedesktopTrash final : public Trash {
public:
    /// `dataFolder` is $XDG_DATA_HOME.
    explicit FreedesktopTrash(std::string dataFolder) : home_(std::move(dataFolder) + "/Trash") {}

    std::expected<Receipt, Error> moveToTrash(const std::string& path) override;
    std::expected<void, Error> putBack(const Receipt& receipt) override;

    /// A path as the Trash's records spell it: "a b" is "a%20b".
    static std::string encoded(std::string_view path);

private:
    std::string home_;
};

} // namespace kippo
