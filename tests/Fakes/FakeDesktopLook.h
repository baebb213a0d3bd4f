#pragma once

#include "Support/DesktopLook.h"

namespace kippo {

/// A look that the test chooses.
class FakeDesktopLook final : public DesktopLook {
public:
    bool isDark() const override { return isDark_; }
    std::optional<std::uint32_t> accent() const override { return accent_; }
    bool reducesMotion() const override { return reducesMotion_; }
    [[nodiscard]] Subscription observe(std::function<void()> callback) override {
        return observers_.add(std::move(callback));
    }
    void set(bool isDark) {
        isDark_ = isDark;
        observers_.notify();
    }
    void setAccent(std::uint32_t accent) {
        accent_ = accent;
        observers_.notify();
    }
    void reduceMotion() {
        reducesMotion_ = true;
        observers_.notify();
    }

private:
    bool isDark_ = false;
    bool reducesMotion_ = false;
    std::optional<std::uint32_t> accent_;
    Observers observers_;
};

} // namespace kippo
