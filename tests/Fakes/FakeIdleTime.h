#pragma once

#include "Support/IdleTime.h"

namespace kippo {

/// A person whose last input was `idle` ago; nothing when the desktop does not tell.
class FakeIdleTime final : public IdleTime {
public:
    std::optional<Seconds> idle{Seconds{0}};

    std::optional<Seconds> sinceLastInput() override { return idle; }
};

} // namespace kippo
