#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace kippo {

/// Searches gigabytes for one short text, some times faster than the C library: it looks at three bytes of the text at
/// once, which the caller chooses so that they rarely stand together in what is searched.
class ByteSearch {
public:
    /// `places` are three offsets within `needle`, ascending; the needle must outlive this.
    constexpr ByteSearch(std::string_view needle, std::array<std::size_t, 3> places)
        : needle_(needle), places_(places) {}

    /// The offset of the first occurrence at or after `from`; `npos` when there is none.
    std::size_t find(std::string_view text, std::size_t from = 0) const;
    static constexpr std::size_t npos = std::string_view::npos;

private:
    std::string_view needle_;
    std::array<std::size_t, 3> places_;
};

/// The offset of the last `wanted` in `text`; `npos` when there is none. As std::string_view::rfind, at the speed of
/// memchr.
std::size_t findLast(std::string_view text, char wanted);

} // namespace kippo
