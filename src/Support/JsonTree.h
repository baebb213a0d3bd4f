#pragma once

#include "Support/Json.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kippo::Json {

/// A value and the place where it stands in its text, for edits that leave the other bytes alone. Offsets in bytes.
struct Node {
    Kind kind = Kind::null;
    std::size_t start = 0; ///< where a member's name begins; `begin` for every other value
    std::size_t begin = 0;
    std::size_t end = 0; ///< behind the value
    std::string key;     ///< of a member, decoded
    std::string text;    ///< a string decoded, a number or literal as it is written
    std::vector<Node> children;

    /// The member of that name; none for a value that is no object.
    const Node* member(std::string_view name) const;
};

/// Whether the members and elements of `node` are wanted; the text of those that are not is checked all the same.
/// `node` has its key, kind and place; `depth` is 0 for the whole text's value.
using Wanted = std::function<bool(const Node& node, std::size_t depth)>;

/// The text as a tree. Nothing when it is not exactly one JSON value in UTF-8, is nested deeper than 1000 levels, or
/// when an object among the wanted ones has two members of one name, of which readers take different ones.
std::optional<Node> tree(std::string_view text, const Wanted& wanted);

} // namespace kippo::Json
