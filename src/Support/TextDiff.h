#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kippo {

/// One line of a unified diff as people read it.
struct DiffLine {
    char mark = ' ';  ///< ' ' in both texts, '-' only in the old one, '+' only in the new one, '@' where a hunk begins
    std::string text; ///< without its line ending; of '@' the place, "-1,4 +1,9"
    /// The last line of its text and not ended by a line feed.
    bool endsAbruptly = false;

    bool operator==(const DiffLine&) const = default;
};

/// What turns `before` into `after`, line by line, with up to `context` equal lines round each change; empty when the
/// texts are equal. Lines end with a line feed; a carriage return before it belongs to the line.
std::vector<DiffLine> diffLines(std::string_view before, std::string_view after, std::size_t context = 3);

/// The same as `diff -u` and `patch` have it, under the names of the two files; empty when the texts are equal. Name a
/// file that is not there "/dev/null".
std::string unifiedDiff(std::string_view before, std::string_view after, std::string_view beforeName,
                        std::string_view afterName);

} // namespace kippo
