#pragma once

#include <expected>
#include <functional>
#include <string>

namespace kippo {

/// Sees to it that one Kippo runs for a person, and hands it what other processes ask of it. Abstract because each
/// platform has its own way; the real one is DBusInstance.
class SingleInstance {
public:
    virtual ~SingleInstance() = default;
    /// Makes this process the one. False when another one is, and then that one was asked to show its settings. What is
    /// asked of this process reaches the callbacks only once the main queue runs.
    [[nodiscard]] virtual bool claim() = 0;

    /// The callbacks are called on the main queue. The page is empty for the settings' first.
    std::function<void(const std::string& page)> onOpenSettings;
    /// Opens the panel on the page of this name, such as "agents"; a sentence for the person when there is none.
    std::function<std::expected<void, std::string>(const std::string& page)> onOpenPage;
    /// Does what FocusCommand says with this word and gives the state as JSON, or a sentence for the person.
    /// `minutes` is 0 when none were given.
    std::function<std::expected<std::string, std::string>(const std::string& command, int minutes)> onFocus;
};

} // namespace kippo
