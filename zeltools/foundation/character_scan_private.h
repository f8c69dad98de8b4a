// SPDX-License-Identifier: MIT
// The scans that text searches spend their time in, a block of 16 bytes at a step where the machine can.
//
// A scan only proposes: it skips what cannot be a match and stops at what may be one. The caller compares on.

#pragma once

#include "zeltools/foundation/characters.h"

#include <bit>
#include <cstddef>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace detail {

inline constexpr std::size_t NotFound = static_cast<std::size_t>(-1);

/// What a scan looks for at one position: one character, or one character in either case.
template <class T>
struct ScanTarget {
    T value;
    T fold = T();        ///< Bits to set before comparing: 0x20 for an ASCII letter without case.
    bool beyond = false; ///< Whether any character beyond ASCII stops the scan: the locale may lower it to `value`.

    static constexpr ScanTarget Exact(T character) { return {character}; }

    static ScanTarget NoCase(T lowered) {
        if (!IsAscii(lowered))
            return {lowered, T(), true};
        return {lowered, T(lowered >= T('a') && lowered <= T('z') ? 0x20 : 0), true};
    }

    bool MayBe(T character) const {
        return static_cast<T>(character | fold) == value || (beyond && !IsAscii(character));
    }
};

#if defined(__SSE2__)

template <class T>
struct Block {
    static constexpr std::size_t Size = sizeof(__m128i) / sizeof(T);

    static __m128i Load(T const* text) { return _mm_loadu_si128(reinterpret_cast<__m128i const*>(text)); }
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
    static __m128i IsAscii(__m128i text) {
        __m128i const high = All(static_cast<T>(sizeof(T) == 1 ? 0x80 : 0xFF80));
        return Equal(_mm_and_si128(text, high), _mm_setzero_si128());
    }
    /// One bit a byte: a character of two bytes gives two.
    static unsigned Bits(__m128i mask) { return static_cast<unsigned>(_mm_movemask_epi8(mask)); }
    static std::size_t First(unsigned bits) { return static_cast<std::size_t>(std::countr_zero(bits)) / sizeof(T); }
    static std::size_t Last(unsigned bits) { return static_cast<std::size_t>(31 - std::countl_zero(bits)) / sizeof(T); }
};

/// A ScanTarget spread over a block.
template <class T>
struct BlockTarget {
    __m128i value;
    __m128i fold;
    __m128i ignoreBeyond; ///< All ones where characters beyond ASCII do not matter.

    explicit BlockTarget(ScanTarget<T> const& target)
        : value(Block<T>::All(target.value)), fold(Block<T>::All(target.fold)),
          ignoreBeyond(target.beyond ? _mm_setzero_si128() : _mm_set1_epi8(-1)) {}

    __m128i MayBe(T const* text) const {
        __m128i const block = Block<T>::Load(text);
        __m128i const equal = Block<T>::Equal(_mm_or_si128(block, fold), value);
        __m128i const settled = _mm_or_si128(Block<T>::IsAscii(block), ignoreBeyond);
        return _mm_or_si128(equal, _mm_andnot_si128(settled, _mm_set1_epi8(-1)));
    }
};

#endif

/// The first position from `from` on that may be `target`.
template <class T>
std::size_t ScanFor(T const* text, std::size_t length, std::size_t from, ScanTarget<T> const& target) {
#if defined(__SSE2__)
    BlockTarget<T> const spread(target);
    for (; from + Block<T>::Size <= length; from += Block<T>::Size) {
        if (unsigned const bits = Block<T>::Bits(spread.MayBe(text + from)))
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
template <class T>
std::size_t ScanForPair(T const* text, std::size_t length, std::size_t from, ScanTarget<T> const& first,
                        ScanTarget<T> const& second) {
#if defined(__SSE2__)
    BlockTarget<T> const spreadFirst(first);
    BlockTarget<T> const spreadSecond(second);
    for (; from + Block<T>::Size < length; from += Block<T>::Size) {
        __m128i const both = _mm_and_si128(spreadFirst.MayBe(text + from), spreadSecond.MayBe(text + from + 1));
        if (unsigned const bits = Block<T>::Bits(both))
            return from + Block<T>::First(bits);
    }
#endif
    for (; from + 1 < length; ++from) {
        if (first.MayBe(text[from]) && second.MayBe(text[from + 1]))
            return from;
    }
    return NotFound;
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
