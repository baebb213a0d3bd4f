#pragma once

#include "Support/UserDefaults.h"

#include <map>

namespace kippo {

/// Settings in memory. `values` is what a store has written so far.
class FakeDefaults final : public UserDefaults {
public:
    std::map<std::string, DefaultsValue, std::less<>> values;

    std::optional<DefaultsValue> value(std::string_view key) const override {
        for (const auto* map : {&values, &registered_}) {
            if (const auto found = map->find(key); found != map->end()) {
                return found->second;
            }
        }
        return std::nullopt;
    }
    void set(std::string_view key, DefaultsValue value) override {
        values.insert_or_assign(std::string{key}, std::move(value));
        observers_.notify();
    }
    void registerDefault(std::string_view key, DefaultsValue value) override {
        registered_.insert_or_assign(std::string{key}, std::move(value));
    }
    [[nodiscard]] Subscription observe(std::function<void()> callback) override {
        return observers_.add(std::move(callback));
    }

private:
    std::map<std::string, DefaultsValue, std::less<>> registered_;
    Observers observers_;
};

} // namespace kippo
