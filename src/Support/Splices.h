#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace kippo {

/// Replacements in one text that are made together; every byte outside them stays. They must not overlap; an insertion
/// may stand where a replacement ends.
class Splices {
public:
    bool empty() const { return changes_.empty(); }

    /// `bytes` in place of those from `begin` to before `end`; offsets are those of the unchanged text.
    void replace(std::size_t begin, std::size_t end, std::string_view bytes) { changes_[{begin, end}] += bytes; }

    std::string applied(std::string_view text) const {
        std::string out;
        std::size_t at = 0;
        for (const auto& [place, bytes] : changes_) {
            out += text.substr(at, place.first - at);
            out += bytes;
            at = place.second;
        }
        return out += text.substr(at);
    }

private:
    std::map<std::pair<std::size_t, std::size_t>, std::string> changes_;
};

} // namespace kippo
