#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kippo {

/// A desktop entry file: a group of keys and values. A change leaves every other line as it was, comments and other
/// groups included.
class DesktopEntry {
public:
    explicit DesktopEntry(std::string_view text);

    /// The value as it stands in the file. Nothing when there is no such key.
    std::optional<std::string> value(std::string_view key) const;
    bool is(std::string_view key, bool state) const { return value(key) == (state ? "true" : "false"); }
    /// Changes the line, or adds one at the end of the group.
    void set(std::string_view key, std::string_view value);
    std::string text() const;

    /// Text as a value: what would end the line or be read as an escape is escaped.
    static std::string escaped(std::string_view text);
    /// A program's path as the value of Exec, as far as it is one word of the command line there.
    static std::string commandWord(std::string_view path);

private:
    /// The line of a key, or the end of the group; the size of all when there is no group.
    std::size_t find(std::string_view key) const;
    std::size_t endOfGroup() const;

    std::vector<std::string> lines_;
    std::size_t begin_ = 0; ///< the line after the group's header
};

} // namespace kippo
