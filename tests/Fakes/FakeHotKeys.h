#pragma once

#include "Support/HotKeys.h"

#include <map>
#include <memory>
#include <set>
#include <utility>

namespace kippo {

/// Keys of a desktop where the test presses them.
class FakeHotKeys final : public HotKeys {
public:
    std::set<char> takenByAnother; ///< letters that another program holds

    [[nodiscard]] std::expected<Subscription, Error> grab(HotKeyCombination keys,
                                                          std::function<void()> pressed) override {
        if (takenByAnother.contains(keys.letter) || grabs_->contains(keys.letter)) {
            return std::unexpected{Error::takenByAnother};
        }
        (*grabs_)[keys.letter] = std::move(pressed);
        return Subscription{[weak = std::weak_ptr(grabs_), letter = keys.letter] {
            if (const auto grabs = weak.lock()) {
                grabs->erase(letter);
            }
        }};
    }

    /// Whether somebody listens to the letter with Control and Alt.
    bool isGrabbed(char letter) const { return grabs_->contains(letter); }
    /// Presses it.
    void press(char letter) const {
        if (const auto grab = grabs_->find(letter); grab != grabs_->end()) {
            const auto pressed = grab->second;
            pressed();
        }
    }

private:
    std::shared_ptr<std::map<char, std::function<void()>>> grabs_ =
        std::make_shared<std::map<char, std::function<void()>>>();
};

} // namespace kippo
