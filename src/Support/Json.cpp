#include "Support/Json.h"

#include "Support/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

#include <rapidjson/reader.h>

namespace kippo::Json {

namespace {

/// Follows the reader through the text and tells the visitor where each value stands.
class Guide {
public:
    explicit Guide(Visitor& visitor) : visitor_(visitor) {}

    bool tooDeep() const { return tooDeep_; }

    bool Null() { return scalar(Kind::null, "null"); }
    bool Bool(bool value) { return scalar(Kind::boolean, value ? "true" : "false"); }
    bool RawNumber(const char* text, rapidjson::SizeType size, bool) { return scalar(Kind::number, {text, size}); }
    bool String(const char* text, rapidjson::SizeType size, bool) { return scalar(Kind::string, {text, size}); }
    bool Key(const char* text, rapidjson::SizeType size, bool) {
        if (depth_ <= maxReportedDepth) {
            levels_[depth_ - 1].key = {text, size};
        }
        return true;
    }
    bool StartObject() { return enter(Kind::object, -1); }
    bool EndObject(rapidjson::SizeType) { return leave(Kind::object); }
    bool StartArray() { return enter(Kind::array, 0); }
    bool EndArray(rapidjson::SizeType) { return leave(Kind::array); }

    // Never called, as numbers come as they are written.
    bool Int(int) { return false; }
    bool Uint(unsigned) { return false; }
    bool Int64(std::int64_t) { return false; }
    bool Uint64(std::uint64_t) { return false; }
    bool Double(double) { return false; }

private:
    bool isReported() const { return depth_ <= maxReportedDepth; }
    Path path() const { return {levels_.data(), depth_}; }

    /// An element's index is the number of elements before it; a member has none.
    void passValue() {
        if (depth_ > 0 && isReported() && levels_[depth_ - 1].index >= 0) {
            ++levels_[depth_ - 1].index;
        }
    }

    bool scalar(Kind kind, std::string_view text) {
        const bool goesOn = !isReported() || visitor_.value(path(), kind, text);
        passValue();
        return goesOn;
    }

    bool enter(Kind kind, std::ptrdiff_t firstIndex) {
        if (isReported() && !visitor_.begin(path(), kind)) {
            return false;
        }
        if (++depth_ <= maxReportedDepth) {
            levels_[depth_ - 1] = {{}, firstIndex};
        }
        tooDeep_ = depth_ > maxDepth;
        return !tooDeep_;
    }

    bool leave(Kind kind) {
        --depth_;
        const bool goesOn = !isReported() || visitor_.end(path(), kind);
        passValue();
        return goesOn;
    }

    Visitor& visitor_;
    std::array<Step, maxReportedDepth> levels_;
    std::size_t depth_ = 0;
    bool tooDeep_ = false;
};

bool isSurrogateEscape(const char* at, const char* end) {
    return end - at >= 6 && at[0] == '\\' && at[1] == 'u' && (at[2] | 0x20) == 'd' &&
           std::strchr("89abcdefABCDEF", at[3]) != nullptr && at[3] != '\0';
}

bool isFirstHalf(const char* escape) { return std::strchr("89abAB", escape[3]) != nullptr; }

/// A quick look for what might be the escape of a surrogate. Without branches inside a block, so that the compiler
/// uses vector instructions: nearly every text holds none, and a large one should not be gone through bytewise for it.
bool mayHoldSurrogateEscapes(const char* text, std::size_t size) {
    constexpr std::size_t block = 4096;
    for (std::size_t start = 0; start + 2 < size; start += block) {
        const std::size_t end = std::min(start + block, size - 2);
        unsigned char found = 0;
        for (std::size_t i = start; i < end; ++i) {
            found = static_cast<unsigned char>(
                found | static_cast<unsigned char>((text[i] == '\\') & (text[i + 1] == 'u') &
                                                   ((text[i + 2] == 'd') | (text[i + 2] == 'D'))));
        }
        if (found != 0) {
            return true;
        }
    }
    return false;
}

/// Overwrites each escaped surrogate that is no half of a pair by the escape of U+FFFD, which is as long. The reader
/// would reject the text for a first half alone and pass a second half on as bytes that are not UTF-8.
void repairSurrogateEscapes(char* text, std::size_t size) {
    char* const end = text + size;
    for (char* at = text; at < end;) {
        at = static_cast<char*>(std::memchr(at, '\\', static_cast<std::size_t>(end - at)));
        if (at == nullptr) {
            return;
        }
        if (!isSurrogateEscape(at, end)) {
            at += 2;
        } else if (isFirstHalf(at) && isSurrogateEscape(at + 6, end) && !isFirstHalf(at + 6)) {
            at += 12;
        } else {
            std::memcpy(at, "\\ufffd", 6);
            at += 6;
        }
    }
}

} // namespace

bool matches(Path path, std::initializer_list<std::string_view> steps) {
    return std::ranges::equal(path, steps, [](const Step& step, std::string_view wanted) {
        return step.index >= 0 ? wanted == anyElement : wanted != anyElement && step.key == wanted;
    });
}

bool Visitor::begin(Path, Kind) { return true; }
bool Visitor::end(Path, Kind) { return true; }

Outcome read(char* text, std::size_t size, Visitor& visitor) {
    std::memset(text + size, 0, padding);
    if (mayHoldSurrogateEscapes(text, size)) {
        repairSurrogateEscapes(text, size);
    }
    // Iterative, for the nesting of a stranger's text must not be that of our stack. Numbers as they are written, for
    // most are never looked at.
    constexpr unsigned flags =
        rapidjson::kParseInsituFlag | rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
    rapidjson::Reader reader;
    rapidjson::InsituStringStream stream(text);
    Guide guide(visitor);
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, guide);
    if (result.Code() == rapidjson::kParseErrorTermination) {
        return guide.tooDeep() ? Outcome::malformed : Outcome::stopped;
    }
    // A zero byte ends the text for the reader, but not for JSON.
    return !result.IsError() && stream.Tell() == size ? Outcome::complete : Outcome::malformed;
}

Outcome read(std::string& text, Visitor& visitor) {
    const std::size_t size = text.size();
    text.resize(size + padding);
    return read(text.data(), size, visitor);
}

std::optional<double> toDouble(std::string_view number) {
    double value = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (error != std::errc{} || end != number.data() + number.size()) {
        return std::nullopt;
    }
    return value;
}

StringMembers::StringMembers(std::initializer_list<std::string_view> names) {
    members_.reserve(names.size());
    for (const auto name : names) {
        members_.push_back({name, std::nullopt});
    }
}

void StringMembers::clear() {
    for (auto& member : members_) {
        member.text.reset();
    }
}

void StringMembers::set(std::string_view name, Kind kind, std::string_view text) {
    const auto member = std::ranges::find(members_, name, &Member::name);
    if (member == members_.end()) {
        return;
    }
    if (kind == Kind::string) {
        member->text = text;
    } else {
        member->text.reset();
    }
}

std::optional<std::string_view> StringMembers::operator[](std::string_view name) const {
    const auto member = std::ranges::find(members_, name, &Member::name);
    return member == members_.end() ? std::nullopt : member->text;
}

Writer& Writer::key(std::string_view name) {
    separate();
    quote(name);
    out_ += ':';
    needsComma_ = false;
    return *this;
}

Writer& Writer::string(std::string_view text) {
    separate();
    quote(text);
    return *this;
}

Writer& Writer::number(double value) {
    if (!std::isfinite(value)) {
        return null();
    }
    separate();
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    out_.append(digits.data(), end);
    return *this;
}

Writer& Writer::number(std::int64_t value) {
    separate();
    std::array<char, 24> digits;
    out_.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
    return *this;
}

Writer& Writer::boolean(bool value) {
    separate();
    out_ += value ? "true" : "false";
    return *this;
}

Writer& Writer::null() {
    separate();
    out_ += "null";
    return *this;
}

Writer& Writer::open(char bracket) {
    separate();
    out_ += bracket;
    needsComma_ = false;
    return *this;
}

Writer& Writer::close(char bracket) {
    out_ += bracket;
    needsComma_ = true;
    return *this;
}

/// Every value and key goes through here, so that the comma of the next one is known.
void Writer::separate() {
    if (needsComma_) {
        out_ += ',';
    }
    needsComma_ = true;
}

void Writer::quote(std::string_view text) {
    constexpr std::string_view hex = "0123456789abcdef";
    out_ += '"';
    for (const char c : Text::validUtf8(text)) {
        switch (c) {
        case '"':
        case '\\':
            out_ += '\\';
            out_ += c;
            break;
        case '\n':
            out_ += "\\n";
            break;
        case '\r':
            out_ += "\\r";
            break;
        case '\t':
            out_ += "\\t";
            break;
        default:
            if (const auto byte = static_cast<unsigned char>(c); byte < 0x20) {
                out_ += "\\u00";
                out_ += hex[byte >> 4];
                out_ += hex[byte & 15];
            } else {
                out_ += c;
            }
        }
    }
    out_ += '"';
}

} // namespace kippo::Json
