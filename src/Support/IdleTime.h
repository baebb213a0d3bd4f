#pragma once

#include "Support/Time.h"

#include <optional>

namespace kippo {

/// How long ago the person last touched keyboard or pointer. Abstract so that tests decide; the real one asks the
/// desktop.
class IdleTime {
public:
    virtual ~IdleTime() = default;
    /// Nothing when the desktop does not tell.
    virtual std::optional<Seconds> sinceLastInput() = 0;
};

} // namespace kippo
