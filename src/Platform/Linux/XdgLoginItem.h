#pragma once

#include "Support/LoginItem.h"
#include "Support/UserFiles.h"

#include <string>

namespace kippo {

/// The entry "kippo.desktop" in the user's autostart folder. What people or their desktop's settings changed in it
/// stays: turning off marks it as hidden rather than removing it, turning on takes that mark away.
class XdgLoginItem final : public LoginItem {
public:
    /// `folder` is "autostart" in the folder of all programs' settings; `executable` an absolute path.
    XdgLoginItem(UserFiles& files, const std::string& folder, std::string executable);

    bool isOn() override;
    std::expected<void, Error> set(bool on) override;

private:
    bool starts(const std::string& command) const;

    UserFiles& files_;
    std::string path_;
    std::string executable_;
};

} // namespace kippo
