#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kippo {

/// A JSON string as it stands in the text, between its quotes. Decoded only on demand, because most strings of a
/// transcript are looked at and thrown away.
struct JsonText {
    std::string_view raw;
    bool escaped = false; ///< `raw` holds at least one backslash

    bool empty() const { return raw.empty(); }
    bool operator==(std::string_view text) const { return escaped ? decoded() == text : raw == text; }
    /// The text as UTF-8; a lone surrogate escape becomes U+FFFD, other invalid bytes stay.
    std::string decoded() const;
};

/// The decoded texts, with a line feed between two.
std::string joinedLines(std::span<const JsonText> texts);

/// Reads one JSON value by walking over it once, without building anything: the caller takes the members it wants and
/// everything else is skipped at the speed of a byte scan, yet checked in full. Malformed text makes `failed()` true
/// and every later read empty. UTF-8 is not checked. The text must outlive what was read from it.
class JsonSkim {
public:
    enum class Kind { object, array, string, number, literal, none };

    /// Values nested deeper than this are malformed.
    static constexpr unsigned maxDepth = 1024;

    explicit JsonSkim(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

    /// What comes next.
    Kind peek();
    /// Calls `member(key)` for each member of the object that comes next; the callback reads the member's value or
    /// leaves it, and then it is skipped. Another kind of value is skipped. False when it was no object or malformed.
    template <typename Member> bool object(Member&& member);
    /// Calls `item()` for each item of the array that comes next, under the same terms.
    template <typename Item> bool array(Item&& item);

    /// The string that comes next; nothing, and the value skipped, when it is no string.
    std::optional<JsonText> text();
    /// Whether a literal `true` comes next; skips the value.
    bool flag();
    /// The whole number that comes next; nothing, and the value skipped, when it is no number or out of range.
    std::optional<std::int64_t> integer();
    /// The text of the value that comes next, which is skipped; empty when malformed.
    std::string_view value();
    bool skip();

    bool failed() const { return failed_; }
    /// Nothing but white space is left and nothing was malformed.
    bool finished();

private:
    bool fail();
    void space();
    bool take(char wanted);
    bool scanString(JsonText& text);
    bool scanNumber();
    bool scanLiteral(std::string_view word);
    bool scanScalar();

    const char* at_;
    const char* end_;
    bool failed_ = false;
};

template <typename Member> bool JsonSkim::object(Member&& member) {
    if (peek() != Kind::object) {
        skip();
        return false;
    }
    ++at_;
    if (take('}')) {
        return true;
    }
    do {
        JsonText key;
        space();
        if (!scanString(key) || !(take(':') || fail())) {
            return false;
        }
        const char* const before = at_;
        member(key);
        if (at_ == before) {
            skip();
        }
    } while (!failed_ && take(','));
    return !failed_ && (take('}') || fail());
}

template <typename Item> bool JsonSkim::array(Item&& item) {
    if (peek() != Kind::array) {
        skip();
        return false;
    }
    ++at_;
    if (take(']')) {
        return true;
    }
    do {
        const char* const before = at_;
        item();
        if (at_ == before) {
            skip();
        }
    } while (!failed_ && take(','));
    return !failed_ && (take(']') || fail());
}

} // namespace kippo
