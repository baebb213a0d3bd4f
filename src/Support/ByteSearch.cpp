#include "Support/ByteSearch.h"

#include <bit>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <immintrin.h>
#endif

namespace kippo {

#ifdef __SSE2__

namespace {

struct Pattern {
    std::string_view needle;
    std::array<std::size_t, 3> places;

    bool isAt(const char* at) const { return std::memcmp(at, needle.data(), needle.size()) == 0; }
};

/// The first match among the candidates of one block, which are bits; nothing when none is one.
const char* firstMatch(const Pattern& pattern, const char* at, std::uint64_t candidates) {
    for (; candidates != 0; candidates &= candidates - 1) {
        const char* const candidate = at + std::countr_zero(candidates);
        if (pattern.isAt(candidate)) {
            return candidate;
        }
    }
    return nullptr;
}

/// Stops at the first match, or where too few bytes are left for a whole block; `at` says where.
bool searchNarrow(const Pattern& pattern, const char*& at, const char* end) {
    const auto load = [](const char* from) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from)); };
    const __m128i first = _mm_set1_epi8(pattern.needle[pattern.places[0]]);
    const __m128i second = _mm_set1_epi8(pattern.needle[pattern.places[1]]);
    const __m128i third = _mm_set1_epi8(pattern.needle[pattern.places[2]]);
    for (const auto width = static_cast<std::ptrdiff_t>(16 + pattern.needle.size()); end - at >= width; at += 16) {
        const __m128i hits = _mm_and_si128(_mm_and_si128(_mm_cmpeq_epi8(load(at + pattern.places[0]), first),
                                                         _mm_cmpeq_epi8(load(at + pattern.places[1]), second)),
                                           _mm_cmpeq_epi8(load(at + pattern.places[2]), third));
        if (const auto mask = static_cast<unsigned>(_mm_movemask_epi8(hits)); mask != 0) {
            if (const char* const match = firstMatch(pattern, at, mask)) {
                at = match;
                return true;
            }
        }
    }
    return false;
}

/// As `searchNarrow`, 64 bytes at a time.
__attribute__((target("avx2"))) bool searchWide(const Pattern& pattern, const char*& at, const char* end) {
    const __m256i first = _mm256_set1_epi8(pattern.needle[pattern.places[0]]);
    const __m256i second = _mm256_set1_epi8(pattern.needle[pattern.places[1]]);
    const __m256i third = _mm256_set1_epi8(pattern.needle[pattern.places[2]]);
    for (const auto width = static_cast<std::ptrdiff_t>(64 + pattern.needle.size()); end - at >= width; at += 64) {
        const auto* const one = reinterpret_cast<const __m256i*>(at + pattern.places[0]);
        const auto* const two = reinterpret_cast<const __m256i*>(at + pattern.places[1]);
        const auto* const three = reinterpret_cast<const __m256i*>(at + pattern.places[2]);
        const __m256i low = _mm256_and_si256(_mm256_and_si256(_mm256_cmpeq_epi8(_mm256_loadu_si256(one), first),
                                                              _mm256_cmpeq_epi8(_mm256_loadu_si256(two), second)),
                                             _mm256_cmpeq_epi8(_mm256_loadu_si256(three), third));
        const __m256i high = _mm256_and_si256(_mm256_and_si256(_mm256_cmpeq_epi8(_mm256_loadu_si256(one + 1), first),
                                                               _mm256_cmpeq_epi8(_mm256_loadu_si256(two + 1), second)),
                                              _mm256_cmpeq_epi8(_mm256_loadu_si256(three + 1), third));
        if (const __m256i any = _mm256_or_si256(low, high); _mm256_testz_si256(any, any) != 0) {
            continue;
        }
        const std::uint64_t mask = static_cast<std::uint32_t>(_mm256_movemask_epi8(low)) |
                                   std::uint64_t{static_cast<std::uint32_t>(_mm256_movemask_epi8(high))} << 32U;
        if (const char* const match = firstMatch(pattern, at, mask)) {
            at = match;
            return true;
        }
    }
    return false;
}

} // namespace

std::size_t ByteSearch::find(std::string_view text, std::size_t from) const {
    static const bool wide = __builtin_cpu_supports("avx2") != 0;
    const Pattern pattern{.needle = needle_, .places = places_};
    const char* at = text.data() + from;
    const char* const end = text.data() + text.size();
    if ((wide && searchWide(pattern, at, end)) || searchNarrow(pattern, at, end)) {
        return static_cast<std::size_t>(at - text.data());
    }
    return text.find(needle_, static_cast<std::size_t>(at - text.data()));
}

std::size_t findLast(std::string_view text, char wanted) {
    const __m128i all = _mm_set1_epi8(wanted);
    while (text.size() >= 16) {
        const auto* const block = reinterpret_cast<const __m128i*>(text.data() + text.size() - 16);
        const auto mask = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_loadu_si128(block), all)));
        if (mask != 0) {
            return text.size() - 16 + static_cast<std::size_t>(std::bit_width(mask)) - 1;
        }
        text.remove_suffix(16);
    }
    return text.rfind(wanted);
}

#else

std::size_t ByteSearch::find(std::string_view text, std::size_t from) const { return text.find(needle_, from); }

std::size_t findLast(std::string_view text, char wanted) { return text.rfind(wanted); }

#endif

} // namespace kippo
