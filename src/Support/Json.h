#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// JSON as it comes from other programs, read value by value without building a tree, and JSON of our own, written
/// compactly.
namespace kippo::Json {

enum class Kind : std::uint8_t { object, array, string, number, boolean, null };

/// One step from a value to one of its members (`key`) or elements (`index`, counted from 0).
struct Step {
    std::string_view key;
    std::ptrdiff_t index = -1;
};

/// Where a value stands in its text, outermost step first; empty for the value that is the whole text.
using Path = std::span<const Step>;

/// Values that stand deeper than this are read but not reported.
inline constexpr std::size_t maxReportedDepth = 12;

/// Texts nested deeper than this count as malformed, which keeps a hostile one from filling the memory.
inline constexpr std::size_t maxDepth = 200'000;

/// In `matches`, any element of an array.
inline constexpr std::string_view anyElement = "[]";

/// Whether `path` takes exactly these steps: `matches(path, {"message", "content", "[]", "type"})`.
bool matches(Path path, std::initializer_list<std::string_view> steps);

/// Told of the values of a text in its order; false from any member ends the reading. It is told of values before the
/// text's end has been seen, so whoever needs a whole text must drop them when `read` says `malformed`.
class Visitor {
public:
    virtual ~Visitor() = default;
    /// A string's decoded text (not always UTF-8: bytes are passed on as they came), a number as it was written,
    /// "true", "false" or "null". The text, and the path's keys, stay readable as long as the buffer that was read.
    virtual bool value(Path path, Kind kind, std::string_view text) = 0;
    /// An object or array begins.
    virtual bool begin(Path path, Kind kind);
    virtual bool end(Path path, Kind kind);
};

enum class Outcome {
    complete,
    stopped,  ///< a visitor's member returned false
    malformed ///< not one JSON value, or one nested too deeply
};

/// Bytes behind a text that `read` may look at and write.
inline constexpr std::size_t padding = 16;

/// Reads one JSON text in place: `text[size, size + padding)` must exist, and nothing of `text` can be read as JSON
/// afterwards. A lone half of a surrogate pair, which agents write when they cut a string, reads as U+FFFD. Numbers
/// beyond the range of a double make the text malformed.
Outcome read(char* text, std::size_t size, Visitor& visitor);

/// The same for a string, whose contents are lost.
Outcome read(std::string& text, Visitor& visitor);

/// The value of a number as `Visitor::value` gives it.
std::optional<double> toDouble(std::string_view number);

/// The wanted members of one object, as far as they are strings. Of equal names the last counts, as with most readers;
/// any other type counts as absent.
class StringMembers {
public:
    /// The names must outlive this.
    StringMembers(std::initializer_list<std::string_view> names);

    void clear();
    /// To be called for each member, objects and arrays too.
    void set(std::string_view name, Kind kind, std::string_view text);
    /// The member's text; nothing when it was absent or its name is not a wanted one.
    std::optional<std::string_view> operator[](std::string_view name) const;

private:
    struct Member {
        std::string_view name;
        std::optional<std::string_view> text;
    };
    std::vector<Member> members_;
};

/// Writes one compact JSON text at the end of a string. Whatever it is given, the text is valid JSON and valid UTF-8 as
/// long as the calls nest rightly: bytes that are not UTF-8 become U+FFFD, numbers that JSON lacks become null.
class Writer {
public:
    explicit Writer(std::string& out) : out_(out) {}

    Writer& beginObject() { return open('{'); }
    Writer& endObject() { return close('}'); }
    Writer& beginArray() { return open('['); }
    Writer& endArray() { return close(']'); }
    Writer& key(std::string_view name);
    Writer& string(std::string_view text);
    Writer& number(double value);
    Writer& number(std::int64_t value);
    Writer& boolean(bool value);
    Writer& null();

private:
    Writer& open(char bracket);
    Writer& close(char bracket);
    void separate();
    void quote(std::string_view text);

    std::string& out_;
    bool needsComma_ = false;
};

} // namespace kippo::Json
