#pragma once

#include "Support/UserDefaults.h"

namespace kippo {

/// Settings as if nobody had ever changed one, kept in memory: the demo neither follows nor touches the person's own.
class DemoDefaults final : public UserDefaults {
public:
    std::optional<DefaultsValue> value(std::string_view key) const override {
        const auto found = values_.find(key);
        return found == values_.end() ? std::nullopt : std::optional{found->second};
    }
    void set(std::string_view key, DefaultsValue value) override {
        values_.insert_or_assign(std::string{key}, std::move(value));
        observers_.notify();
    }
    void registerDefault(std::string_view key, DefaultsValue value) override {
        values_.try_emplace(std::string{key}, std::move(value));
    }
    [[nodiscard]] Subscription observe(std::function<void()> callback) override {
        return observers_.add(std::move(callback));
    }

private:
    std::map<std::string, DefaultsValue, std::less<>> values_;
    Observers observers_;
};

} // namespace kippo
