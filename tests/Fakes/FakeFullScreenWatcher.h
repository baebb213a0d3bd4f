#pragma once

#include "Notch/FullScreenWatcher.h"

#include <optional>

namespace kippo {

/// A desktop on which a film fills the screen at `filled`, if any.
class FakeFullScreenWatcher final : public FullScreenWatcher {
public:
    bool fillsScreenAt(Point corner) const override { return filled_ == corner; }
    [[nodiscard]] Subscription observe(std::function<void()> callback) override {
        return observers_.add(std::move(callback));
    }

    void fill(std::optional<Point> corner) {
        filled_ = corner;
        observers_.notify();
    }

private:
    std::optional<Point> filled_;
    Observers observers_;
};

} // namespace kippo
