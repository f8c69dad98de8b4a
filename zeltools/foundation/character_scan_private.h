// SPDX-License-Identifier: MIT
// The scans that searches and copies spend their time in, a block of 16 bytes at a step where the machine can.
//
// A scan for a target only proposes: it skips what cannot be a match and stops at what may be one. The caller compares
// on.

#pragma once

#include "zeltools/foundation/characters.h"

#include <bit>
#include <cstddef>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace detail {

inline constexpr std::size_t NotFound = static_cast<std::size_t>(-1);

/// Whether a scan stops at one character only, or at whatever the locale may lower to it.
enum class ScanCase {
    Exact,
    Ignored
};

#if defined(__SSE2__)

template <class T>
struct Block {
    static constexpr std::size_t Size = sizeof(__m128i) / sizeof(T);

    static __m128i Load(T const* text) { return _mm_loadu_si128(reinterpret_cast<__m128i const*>(text)); }
    static void Store(T* target, __m128i text) { _mm_storeu_si128(reinterpret_cast<__m128i*>(target), text); }
    static __m128i All(T character) {
        if constexpr (sizeof(T) == 1)
            return _mm_set1_epi8(character);
        else
            return _mm_set1_epi16(static_cast<short>(character));
    }
    static __m128i Equal(__m128i left, __m128i right) {
        if constexpr (sizeof(T) == 1)
            return _mm_cmpeq_epi8(left, right);
        else
            return _mm_cmpeq_epi16(left, right);
    }
    /// One bit a byte: a character of two bytes gives two.
    static unsigned Bits(__m128i mask) { return static_cast<unsigned>(_mm_movemask_epi8(mask)); }
    static std::size_t First(unsigned bits) { return static_cast<std::size_t>(std::countr_zero(bits)) / sizeof(T); }
    static std::size_t Last(unsigned bits) { return static_cast<std::size_t>(31 - std::countl_zero(bits)) / sizeof(T); }
};

#endif

/// What a scan looks for at one position. Where case is ignored, `character` is lowered, an ASCII letter is met in
/// either case, and every character beyond ASCII is stopped at: the locale may lower it to anything.
template <class T, ScanCase Case>
class ScanTarget {
public:
    explicit ScanTarget(T character)
        : m_character(character), m_fold(character >= T('a') && character <= T('z') ? T(0x20) : T()) {
#if defined(__SSE2__)
        m_characters = Block<T>::All(m_character);
        m_folds = Block<T>::All(m_fold);
#endif
    }

    bool MayBe(T character) const {
        if constexpr (Case == ScanCase::Exact)
            return character == m_character;
        else
            return static_cast<T>(character | m_fold) == m_character || !IsAscii(character);
    }

#if defined(__SSE2__)
    /// All ones in the places of a block that may be it.
    __m128i MayBeIn(T const* text) const {
        __m128i const block = Block<T>::Load(text);
        if constexpr (Case == ScanCase::Exact)
            return Block<T>::Equal(block, m_characters);
        // ASCII characters without the bits above it, others with any.
        __m128i const above = _mm_and_si128(block, Block<T>::All(static_cast<T>(sizeof(T) == 1 ? 0x80 : 0xFF80)));
        __m128i const ascii = Block<T>::Equal(above, _mm_setzero_si128());
        __m128i const equal = Block<T>::Equal(_mm_or_si128(block, m_folds), m_characters);
        return _mm_or_si128(equal, _mm_andnot_si128(ascii, _mm_set1_epi8(-1)));
    }
#endif

private:
    T m_character;
    T m_fold;
#if defined(__SSE2__)
    __m128i m_characters;
    __m128i m_folds;
#endif
};

/// The first position from `from` on that may be `target`.
template <class T, ScanCase Case>
std::size_t ScanFor(T const* text, std::size_t length, std::size_t from, ScanTarget<T, Case> const& target) {
#if defined(__SSE2__)
    for (; from + Block<T>::Size <= length; from += Block<T>::Size) {
        if (unsigned const bits = Block<T>::Bits(target.MayBeIn(text + from)))
            return from + Block<T>::First(bits);
    }
#endif
    for (; from < length; ++from) {
        if (target.MayBe(text[from]))
            return from;
    }
    return NotFound;
}

/// The first position from `from` on that may be `first` with `second` behind it.
template <class T, ScanCase Case>
std::size_t ScanForPair(T const* text, std::size_t length, std::size_t from, ScanTarget<T, Case> const& first,
                        ScanTarget<T, Case> const& second) {
#if defined(__SSE2__)
    auto const pairsAt = [&](std::size_t at) {
        return Block<T>::Bits(_mm_and_si128(first.MayBeIn(text + at), second.MayBeIn(text + at + 1)));
    };
    // A search that goes on where an attempt failed often stands on the next one.
    if (from + 1 < length && first.MayBe(text[from]) && second.MayBe(text[from + 1]))
        return from;
    for (; from + Block<T>::Size < length; from += Block<T>::Size) {
        if (unsigned const bits = pairsAt(from))
            return from + Block<T>::First(bits);
    }
    if (length > Block<T>::Size && from + 1 < length) {
        // The rest is seen in the last block, without what was seen before.
        std::size_t const last = length - 1 - Block<T>::Size;
        unsigned const bits = pairsAt(last) & ~0u << (from - last) * sizeof(T);
        return bits ? last + Block<T>::First(bits) : NotFound;
    }
#endif
    for (; from + 1 < length; ++from) {
        if (first.MayBe(text[from]) && second.MayBe(text[from + 1]))
            return from;
    }
    return NotFound;
}

/// Copies the characters in front of the first zero, or `limit` of them; what lies behind, up to the limit, may be
/// written over. The two places do not overlap.
/// @return the number of characters in front of the zero.
template <class T>
std::size_t CopyUpToZero(T* target, T const* text, std::size_t limit) {
    std::size_t from = 0;
#if defined(__SSE2__)
    auto const copyBlock = [&](std::size_t at) {
        __m128i const block = Block<T>::Load(text + at);
        Block<T>::Store(target + at, block);
        return Block<T>::Equal(block, _mm_setzero_si128());
    };
    constexpr std::size_t Size = Block<T>::Size;
    for (; from + 4 * Size <= limit; from += 4 * Size) {
        __m128i const zeros = _mm_or_si128(_mm_or_si128(copyBlock(from), copyBlock(from + Size)),
                                           _mm_or_si128(copyBlock(from + 2 * Size), copyBlock(from + 3 * Size)));
        if (Block<T>::Bits(zeros))
            break;
    }
    for (; from + Size <= limit; from += Size) {
        if (unsigned const zeros = Block<T>::Bits(copyBlock(from)))
            return from + Block<T>::First(zeros);
    }
    if (from < limit && limit >= Size) {
        std::size_t const last = limit - Size;
        unsigned const zeros = Block<T>::Bits(copyBlock(last));
        return zeros ? last + Block<T>::First(zeros) : limit;
    }
#endif
    for (; from < limit && text[from]; ++from)
        target[from] = text[from];
    return from;
}

/// The last position below `end` that is `character`.
template <class T>
std::size_t ScanBackFor(T const* text, std::size_t end, T character) {
#if defined(__SSE2__)
    __m128i const wanted = Block<T>::All(character);
    for (; end >= Block<T>::Size; end -= Block<T>::Size) {
        std::size_t const from = end - Block<T>::Size;
        if (unsigned const bits = Block<T>::Bits(Block<T>::Equal(Block<T>::Load(text + from), wanted)))
            return from + Block<T>::Last(bits);
    }
#endif
    while (end-- > 0) {
        if (text[end] == character)
            return end;
    }
    return NotFound;
}

} // namespace detail
