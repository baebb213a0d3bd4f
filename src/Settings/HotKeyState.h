#pragma once

#include "Support/HotKeys.h"

#include <utility>
#include <vector>

namespace kippo {

/// One of the keys that Kippo asks the desktop for, and what came of it.
struct HotKeyRecord {
    enum class State {
        off, ///< the person wants no hot keys
        held,
        takenByAnother,
        unsupported
    };
    HotKeyCombination keys;
    std::string title; ///< what it does, such as "Open Agents"
    State state = State::off;

    bool operator==(const HotKeyRecord&) const = default;
};

/// The hot keys as they stand, in the order in which people are shown them. The application keeps it, the settings
/// show it.
class HotKeyState {
public:
    const std::vector<HotKeyRecord>& records() const { return records_; }
    /// Takes the place of what there was; the observers are told when it is something new.
    void set(std::vector<HotKeyRecord> records) {
        if (records_ != records) {
            records_ = std::move(records);
            observers_.notify();
        }
    }
    [[nodiscard]] Subscription observe(std::function<void()> callback) const {
        return observers_.add(std::move(callback));
    }

private:
    std::vector<HotKeyRecord> records_;
    mutable Observers observers_; ///< watching changes nothing
};

} // namespace kippo
