#pragma once

#include "Support/Observers.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kippo {

/// One setting. Dates are doubles, see `referenceSeconds`.
using DefaultsValue =
    std::variant<bool, std::int64_t, double, std::string, std::vector<std::string>, std::map<std::string, double>>;

/// The user's settings, by key. Abstract so that stores are tested without files; the real one is JsonUserDefaults,
/// one JSON file that the user may also edit by hand.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;
    /// What the user set under `key`, else its registered default, else nothing.
    virtual std::optional<DefaultsValue> value(std::string_view key) const = 0;
    virtual void set(std::string_view key, DefaultsValue value) = 0;
    /// Supplies the value that `value` gives for a key that the user never set. Never written to disk.
    virtual void registerDefault(std::string_view key, DefaultsValue value) = 0;
    /// Calls back on the main queue after any value changed, whoever changed it.
    [[nodiscard]] virtual Subscription observe(std::function<void()> callback) = 0;

    /// The value under `key` when it has the wanted type, else `fallback`.
    template <typename T> T get(std::string_view key, T fallback = {}) const {
        const auto found = value(key);
        if (!found) {
            return fallback;
        }
        if constexpr (std::is_same_v<T, double>) {
            if (const auto* whole = std::get_if<std::int64_t>(&*found)) {
                return static_cast<double>(*whole);
            }
        }
        const auto* typed = std::get_if<T>(&*found);
        return typed ? *typed : fallback;
    }
};

} // namespace kippo
