#include "Platform/Linux/XdgLoginItem.h"

#include "Platform/Linux/DesktopEntry.h"

#include <utility>

namespace kippo {

namespace {

constexpr std::string_view newEntry = "[Desktop Entry]\n"
                                      "Type=Application\n"
                                      "Name=Kippo\n"
                                      "Comment=Shows what your coding agents are doing\n"
                                      "Terminal=false\n";

constexpr std::string_view hidden = "Hidden";
/// How GNOME's own settings turn an entry off.
constexpr std::string_view enabled = "X-GNOME-Autostart-enabled";

} // namespace

XdgLoginItem::XdgLoginItem(UserFiles& files, const std::string& folder, std::string executable)
    : files_(files), path_(folder + "/kippo.desktop"), executable_(std::move(executable)) {}

/// Whether a command line runs this program: by its path, perhaps behind variables that somebody put before it, or by
/// its name.
bool XdgLoginItem::starts(const std::string& command) const {
    const std::string name = executable_.substr(executable_.rfind('/') + 1);
    return command.contains(DesktopEntry::commandWord(executable_)) || command == name ||
           command.starts_with(name + " ");
}

bool XdgLoginItem::isOn() {
    const auto text = files_.read(path_);
    if (!text || !*text) {
        return false;
    }
    const DesktopEntry entry{**text};
    return !entry.is(hidden, true) && !entry.is(enabled, false) && starts(entry.value("Exec").value_or(""));
}

std::expected<void, LoginItem::Error> XdgLoginItem::set(bool on) {
    const auto failure = [on](const UserFiles::Error& error) {
        return std::unexpected{
            Error{std::string{"Start at login could not be turned "} + (on ? "on: " : "off: ") + error.reason + "."}};
    };
    const auto text = files_.read(path_);
    if (!text) {
        return failure(text.error());
    }
    if (on == isOn()) {
        return {};
    }
    DesktopEntry entry{text->value_or(std::string{newEntry})};
    if (on) {
        if (!starts(entry.value("Exec").value_or(""))) {
            entry.set("Exec", DesktopEntry::commandWord(executable_));
            // So that nothing is tried once Kippo is gone.
            entry.set("TryExec", DesktopEntry::escaped(executable_));
        }
        for (const auto& [key, value] : {std::pair{hidden, "false"}, std::pair{enabled, "true"}}) {
            if (entry.value(key)) {
                entry.set(key, value);
            }
        }
    } else {
        entry.set(hidden, "true");
    }
    if (const auto written = files_.write(path_, entry.text()); !written) {
        return failure(written.error());
    }
    return {};
}

} // namespace kippo
