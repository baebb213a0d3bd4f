#pragma once

#include <cstdlib>

/// What must hold whatever comes in; the fuzzer keeps an input for which it does not.
inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}
