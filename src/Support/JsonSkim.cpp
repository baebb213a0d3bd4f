#include "Support/JsonSkim.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstddef>

#ifdef __SSE2__
#include <immintrin.h>
#endif

namespace kippo {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isSpace(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }

/// The letters that may follow a backslash, but for `u`. A table, because escapes are most of the work in source text.
constexpr std::array<bool, 256> isSimpleEscape = [] {
    std::array<bool, 256> table{};
    for (const char c : {'"', '\\', '/', 'b', 'f', 'n', 'r', 't'}) {
        table[static_cast<unsigned char>(c)] = true;
    }
    return table;
}();

int hexValue(char c) {
    if (isDigit(c)) {
        return c - '0';
    }
    const char small = static_cast<char>(c | 0x20);
    return small >= 'a' && small <= 'f' ? small - 'a' + 10 : -1;
}

/// The four digits after `\u`, or -1.
int hexFour(const char* at) {
    int value = 0;
    for (int i = 0; i < 4; ++i) {
        const int digit = hexValue(at[i]);
        if (digit < 0) {
            return -1;
        }
        value = value * 16 + digit;
    }
    return value;
}

bool isSimplyEscaped(const char* backslash, const char* end) {
    return end - backslash >= 2 && isSimpleEscape[static_cast<unsigned char>(backslash[1])];
}

#ifdef __SSE2__
/// Which bytes of a block are what, one bit each.
struct Block {
    unsigned quotes;
    unsigned backslashes;
    unsigned controls;
    unsigned simpleEscapes; ///< bytes that may follow a backslash

    explicit Block(const char* at) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        const auto equal = [bytes](char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); };
        const auto bits = [](__m128i mask) { return static_cast<unsigned>(_mm_movemask_epi8(mask)); };
        const __m128i quote = equal('"');
        const __m128i backslash = equal('\\');
        const __m128i lastControl = _mm_set1_epi8(0x1F);
        __m128i simple = _mm_or_si128(_mm_or_si128(quote, backslash), equal('/'));
        for (const char letter : {'b', 'f', 'n', 'r', 't'}) {
            simple = _mm_or_si128(simple, equal(letter));
        }
        quotes = bits(quote);
        backslashes = bits(backslash);
        controls = bits(_mm_cmpeq_epi8(_mm_max_epu8(bytes, lastControl), lastControl));
        simpleEscapes = bits(simple);
    }
    static constexpr unsigned width = 16;

protected:
    Block() = default;
};

/// The same of 32 bytes, on processors that can.
struct WideBlock : Block {
    __attribute__((target("avx2"))) explicit WideBlock(const char* at) {
        // A byte may follow a backslash when its lower half and its upper half have a bit in common here.
        const __m256i lower =
            _mm256_broadcastsi128_si256(_mm_setr_epi8(0, 0, 13, 0, 8, 0, 4, 0, 0, 0, 0, 0, 2, 0, 4, 1));
        const __m256i upper =
            _mm256_broadcastsi128_si256(_mm_setr_epi8(0, 0, 1, 0, 0, 2, 4, 8, 0, 0, 0, 0, 0, 0, 0, 0));
        const __m256i half = _mm256_set1_epi8(0x0F);
        const __m256i lastControl = _mm256_set1_epi8(0x1F);
        const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
        const __m256i common =
            _mm256_and_si256(_mm256_shuffle_epi8(lower, _mm256_and_si256(bytes, half)),
                             _mm256_shuffle_epi8(upper, _mm256_and_si256(_mm256_srli_epi16(bytes, 4), half)));
        const __m256i quote = _mm256_cmpeq_epi8(bytes, _mm256_set1_epi8('"'));
        const __m256i backslash = _mm256_cmpeq_epi8(bytes, _mm256_set1_epi8('\\'));
        const __m256i control = _mm256_cmpeq_epi8(_mm256_max_epu8(bytes, lastControl), lastControl);
        const __m256i neither = _mm256_cmpeq_epi8(common, _mm256_setzero_si256());
        quotes = static_cast<unsigned>(_mm256_movemask_epi8(quote));
        backslashes = static_cast<unsigned>(_mm256_movemask_epi8(backslash));
        controls = static_cast<unsigned>(_mm256_movemask_epi8(control));
        simpleEscapes = ~static_cast<unsigned>(_mm256_movemask_epi8(neither));
    }
    static constexpr unsigned width = 32;
};

/// Stops where plain text and simple escapes end, or where less than a block is left; `at` says where.
// Source text holds an escape in every second block, so they must not cost a mispredicted branch each.
template <typename Blocks> [[gnu::always_inline]] inline bool pass(const char*& at, const char* end, bool& escaped) {
    constexpr std::uint32_t oddPlaces = 0xAAAAAAAA;
    constexpr auto all = static_cast<std::uint32_t>((std::uint64_t{1} << Blocks::width) - 1);
    std::uint32_t fromBefore = 0; // the block's first byte follows a backslash
    std::uint32_t anyBackslash = 0;
    for (; end - at >= std::ptrdiff_t{Blocks::width}; at += Blocks::width) {
        const Blocks block{at};
        // Of a row of backslashes every second one is escaped: a subtraction carries that through the row.
        const std::uint32_t open = block.backslashes & ~fromBefore;
        const std::uint32_t rows = ((open << 1U | oddPlaces) - open) ^ oddPlaces;
        const std::uint32_t follows = rows ^ (open | fromBefore);
        const std::uint32_t wrong = follows & ~block.simpleEscapes & all;
        const std::uint32_t stops = ((block.quotes | block.controls) & ~follows) | wrong;
        if (stops != 0) {
            const auto offset = static_cast<unsigned>(std::countr_zero(stops));
            escaped = escaped || ((anyBackslash | (block.backslashes & ((1U << offset) - 1))) != 0);
            at += offset;
            at -= wrong >> offset & 1U; // of a wrong escape its backslash
            return true;
        }
        fromBefore = (rows & block.backslashes) >> (Blocks::width - 1) & 1U;
        anyBackslash |= block.backslashes;
    }
    at -= fromBefore;
    escaped = escaped || anyBackslash != 0;
    return false;
}

__attribute__((target("avx2"))) bool passWide(const char*& at, const char* end, bool& escaped) {
    return pass<WideBlock>(at, end, escaped);
}

// Asked each time, which is one load: a variable would be set before `main`, at every hook of every agent.
bool hasWideRegisters() { return __builtin_cpu_supports("avx2") != 0; }

/// The offset of the first quote, backslash or control character among 16 bytes; 16 when there is none.
int plainLength(const char* at) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const __m128i lastControl = _mm_set1_epi8(0x1F);
    const __m128i special = _mm_or_si128(
        _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('"')), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\'))),
        _mm_cmpeq_epi8(_mm_max_epu8(bytes, lastControl), lastControl));
    return std::countr_zero(static_cast<unsigned>(_mm_movemask_epi8(special)) | 1U << 16U);
}
#endif

/// The first byte that a string's plain text and simple escapes do not explain: its closing quote, a `\u`, a control
/// character or a wrong escape. Sets `escaped` when it passed an escape.
const char* endOfPlain(const char* at, const char* end, bool& escaped) {
#ifdef __SSE2__
    if (end - at >= 16) {
        // Most strings are short and plain: keys, names and ids.
        at += plainLength(at);
        if (at != end && *at == '"') {
            return at;
        }
    }
    if ((hasWideRegisters() && passWide(at, end, escaped)) || pass<Block>(at, end, escaped)) {
        return at;
    }
#endif
    while (at != end && *at != '"' && static_cast<unsigned char>(*at) >= 0x20) {
        if (*at == '\\') {
            if (!isSimplyEscaped(at, end)) {
                break;
            }
            escaped = true;
            ++at;
        }
        ++at;
    }
    return at;
}

void appendUtf8(std::string& out, unsigned code) {
    const auto byte = [&out](unsigned value) { out.push_back(static_cast<char>(value)); };
    if (code < 0x80) {
        byte(code);
    } else if (code < 0x800) {
        byte(0xC0 | (code >> 6));
        byte(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        byte(0xE0 | (code >> 12));
        byte(0x80 | ((code >> 6) & 0x3F));
        byte(0x80 | (code & 0x3F));
    } else {
        byte(0xF0 | (code >> 18));
        byte(0x80 | ((code >> 12) & 0x3F));
        byte(0x80 | ((code >> 6) & 0x3F));
        byte(0x80 | (code & 0x3F));
    }
}

/// Decodes the `\u` escape whose first digit is at `at` and gives the offset behind it.
std::size_t appendUnicodeEscape(std::string& out, std::string_view raw, std::size_t at) {
    auto code = static_cast<unsigned>(hexFour(raw.data() + at));
    at += 4;
    if (code < 0xD800 || code > 0xDFFF) {
        appendUtf8(out, code);
        return at;
    }
    if (code < 0xDC00 && raw.size() - at >= 6 && raw[at] == '\\' && raw[at + 1] == 'u') {
        const auto low = static_cast<unsigned>(hexFour(raw.data() + at + 2));
        if (low >= 0xDC00 && low <= 0xDFFF) {
            appendUtf8(out, 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00));
            return at + 6;
        }
    }
    appendUtf8(out, 0xFFFD);
    return at;
}

char simpleEscape(char c) {
    switch (c) {
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return c;
    }
}

} // namespace

std::string JsonText::decoded() const {
    if (!escaped) {
        return std::string{raw};
    }
    std::string out;
    out.reserve(raw.size());
    for (std::size_t at = 0; at < raw.size();) {
        const auto plain = std::min(raw.find('\\', at), raw.size());
        out.append(raw, at, plain - at);
        at = plain;
        if (at == raw.size()) {
            break;
        }
        const char kind = raw[at + 1];
        at += 2;
        if (kind == 'u') {
            at = appendUnicodeEscape(out, raw, at);
        } else {
            out.push_back(simpleEscape(kind));
        }
    }
    return out;
}

std::string joinedLines(std::span<const JsonText> texts) {
    std::string all;
    for (const auto& text : texts) {
        all += all.empty() ? "" : "\n";
        all += text.decoded();
    }
    return all;
}

bool JsonSkim::fail() {
    failed_ = true;
    at_ = end_;
    return false;
}

void JsonSkim::space() {
    while (at_ != end_ && isSpace(*at_)) {
        ++at_;
    }
}

bool JsonSkim::take(char wanted) {
    space();
    if (at_ == end_ || *at_ != wanted) {
        return false;
    }
    ++at_;
    return true;
}

JsonSkim::Kind JsonSkim::peek() {
    space();
    if (at_ == end_) {
        return Kind::none;
    }
    switch (*at_) {
    case '{':
        return Kind::object;
    case '[':
        return Kind::array;
    case '"':
        return Kind::string;
    case 't':
    case 'f':
    case 'n':
        return Kind::literal;
    default:
        return *at_ == '-' || isDigit(*at_) ? Kind::number : Kind::none;
    }
}

bool JsonSkim::scanString(JsonText& text) {
    if (at_ == end_ || *at_ != '"') {
        return fail();
    }
    const char* const start = ++at_;
    text.escaped = false;
    for (;;) {
        at_ = endOfPlain(at_, end_, text.escaped);
        if (at_ != end_ && *at_ == '"') {
            text.raw = {start, static_cast<std::size_t>(at_ - start)};
            ++at_;
            return true;
        }
        if (end_ - at_ < 6 || at_[0] != '\\' || at_[1] != 'u' || hexFour(at_ + 2) < 0) {
            return fail();
        }
        text.escaped = true;
        at_ += 6;
    }
}

bool JsonSkim::scanNumber() {
    const auto digits = [this] {
        const char* const start = at_;
        while (at_ != end_ && isDigit(*at_)) {
            ++at_;
        }
        return at_ != start;
    };
    if (*at_ == '-') {
        ++at_;
    }
    if (at_ != end_ && *at_ == '0') {
        ++at_;
    } else if (!digits()) {
        return fail();
    }
    if (at_ != end_ && *at_ == '.') {
        ++at_;
        if (!digits()) {
            return fail();
        }
    }
    if (at_ != end_ && (*at_ | 0x20) == 'e') {
        ++at_;
        if (at_ != end_ && (*at_ == '+' || *at_ == '-')) {
            ++at_;
        }
        if (!digits()) {
            return fail();
        }
    }
    return true;
}

bool JsonSkim::scanLiteral(std::string_view word) {
    if (!std::string_view{at_, static_cast<std::size_t>(end_ - at_)}.starts_with(word)) {
        return fail();
    }
    at_ += word.size();
    return true;
}

bool JsonSkim::scanScalar() {
    JsonText ignored;
    switch (*at_) {
    case '"':
        return scanString(ignored);
    case 't':
        return scanLiteral("true");
    case 'f':
        return scanLiteral("false");
    case 'n':
        return scanLiteral("null");
    default:
        return *at_ == '-' || isDigit(*at_) ? scanNumber() : fail();
    }
}

// Nesting is kept as one bit a level rather than on the call stack: the text is a stranger's.
bool JsonSkim::skip() {
    std::array<bool, maxDepth> isObject;
    unsigned depth = 0;
    JsonText key;
    for (;;) {
        space();
        if (at_ == end_) {
            return fail();
        }
        if (*at_ == '{' || *at_ == '[') {
            if (depth == maxDepth) {
                return fail();
            }
            isObject[depth++] = *at_ == '{';
            const char close = *at_++ == '{' ? '}' : ']';
            if (!take(close)) {
                if (close == '}' && !(scanString(key) && (take(':') || fail()))) {
                    return false;
                }
                continue;
            }
            --depth;
        } else if (!scanScalar()) {
            return false;
        }
        // A value has ended: close what ends with it, or go on to the next one.
        while (depth > 0 && !take(',')) {
            if (!take(isObject[depth - 1] ? '}' : ']')) {
                return fail();
            }
            --depth;
        }
        if (depth == 0) {
            return true;
        }
        if (isObject[depth - 1]) {
            space();
            if (!scanString(key) || !(take(':') || fail())) {
                return false;
            }
        }
    }
}

std::optional<JsonText> JsonSkim::text() {
    if (peek() != Kind::string) {
        skip();
        return std::nullopt;
    }
    JsonText text;
    return scanString(text) ? std::optional{text} : std::nullopt;
}

bool JsonSkim::flag() { return value() == "true"; }

std::optional<std::int64_t> JsonSkim::integer() {
    const auto digits = value();
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc{} || end != digits.data() + digits.size()) {
        return std::nullopt;
    }
    return number;
}

std::string_view JsonSkim::value() {
    space();
    const char* const start = at_;
    return skip() ? std::string_view{start, static_cast<std::size_t>(at_ - start)} : std::string_view{};
}

bool JsonSkim::finished() {
    space();
    return !failed_ && at_ == end_;
}

} // namespace kippo
