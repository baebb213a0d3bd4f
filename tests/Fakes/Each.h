#pragma once

#include <functional>
#include <iterator>
#include <type_traits>
#include <vector>

namespace kippo {

/// What `part`, a member or a function, gives of each of `all`, in their order.
template <typename All, typename Part> auto each(const All& all, const Part& part) {
    using std::begin; // or that of a folder's iterator
    std::vector<std::remove_cvref_t<std::invoke_result_t<const Part&, decltype(*begin(all))>>> parts;
    for (const auto& one : all) {
        parts.push_back(std::invoke(part, one));
    }
    return parts;
}

} // namespace kippo
