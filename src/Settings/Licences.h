#pragma once

#include <span>

namespace kippo {

/// Something by others that Kippo stands on.
struct Component {
    const char* name;
    const char* purpose;
    const char* licence;
};

/// All of them, the largest first.
std::span<const Component> components();

} // namespace kippo
