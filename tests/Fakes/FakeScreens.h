#pragma once

#include "Notch/Screens.h"

namespace kippo {

/// Screens that the test plugs in and out by `set`.
class FakeScreens final : public Screens {
public:
    explicit FakeScreens(std::vector<Screen> connected) : connected_(std::move(connected)) {}

    std::vector<Screen> screens() const override { return connected_; }
    [[nodiscard]] Subscription observe(std::function<void()> callback) override {
        return observers_.add(std::move(callback));
    }

    void set(std::vector<Screen> connected) {
        connected_ = std::move(connected);
        observers_.notify();
    }

private:
    std::vector<Screen> connected_;
    Observers observers_;
};

} // namespace kippo
