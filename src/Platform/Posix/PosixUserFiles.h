#pragma once

#include "Support/UserFiles.h"

namespace kippo {

/// The user's files as the file system has them.
class PosixUserFiles final : public UserFiles {
public:
    std::expected<std::optional<std::string>, Error> read(const std::string& path) override;
    std::expected<void, Error> write(const std::string& path, std::string_view bytes) override;
    std::expected<void, Error> copyOnce(const std::string& path, const std::string& copy) override;
};

} // namespace kippo
