#pragma once

#include "Support/LoginItem.h"

namespace kippo {

/// A login item that is nothing but a switch, which can refuse to move.
class FakeLoginItem final : public LoginItem {
public:
    bool on = false;
    bool refuses = false;

    bool isOn() override { return on; }
    std::expected<void, Error> set(bool wanted) override {
        if (refuses) {
            return std::unexpected{Error{"Start at login could not be changed: Permission denied."}};
        }
        on = wanted;
        return {};
    }
};

} // namespace kippo
