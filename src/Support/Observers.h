#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace kippo {

/// Ends an observation when dropped. Outliving the observed object is harmless.
class Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::function<void()> end) : end_(std::move(end)) {}
    Subscription(Subscription&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            reset();
            end_ = std::exchange(other.end_, nullptr);
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { reset(); }

    void reset() {
        if (auto end = std::exchange(end_, nullptr)) {
            end();
        }
    }

private:
    std::function<void()> end_;
};

/// The callbacks that watch one store. Callbacks may subscribe and unsubscribe while they are being notified.
class Observers {
public:
    [[nodiscard]] Subscription add(std::function<void()> callback) {
        const std::size_t id = state_->next++;
        state_->callbacks.emplace(id, std::make_shared<std::function<void()>>(std::move(callback)));
        return Subscription{[weak = std::weak_ptr(state_), id] {
            if (const auto state = weak.lock()) {
                state->callbacks.erase(id);
            }
        }};
    }

    void notify() const {
        const auto state = state_;
        const auto callbacks = state->callbacks;
        for (const auto& [id, callback] : callbacks) {
            if (state->callbacks.contains(id)) {
                (*callback)();
            }
        }
    }

private:
    struct State {
        std::size_t next = 0;
        std::map<std::size_t, std::shared_ptr<std::function<void()>>> callbacks;
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

} // namespace kippo
