// SPDX-License-Identifier: MIT
// Most lines are short and plain. They are searched, checked and copied in one pass, a block of 16 bytes at a step.

#pragma once

#include "zeltools/foundation/xstring.h"
#include "zeltools/platform/streams.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace detail {

#if defined(__SSE2__)

/// Sixteen bytes: widened into the target. Gives a bit for each line feed, zero and byte beyond ASCII.
inline std::uint64_t WidenBlock(char const* source, char16_t* target) {
    __m128i const zero = _mm_setzero_si128();
    __m128i const block = _mm_loadu_si128(reinterpret_cast<__m128i const*>(source));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target), _mm_unpacklo_epi8(block, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target + 8), _mm_unpackhi_epi8(block, zero));
    // As signed bytes, what is beyond ASCII lies below 1, as a zero does.
    __m128i const stops =
        _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('\n')), _mm_cmplt_epi8(block, _mm_set1_epi8(1)));
    return static_cast<unsigned int>(_mm_movemask_epi8(stops));
}

/// Sixteen units: copied into the target. Gives a bit for each line feed and zero.
inline std::uint64_t CopyBlock(char const* source, char16_t* target) {
    auto const copyHalf = [](char const* from, char16_t* to) {
        __m128i const half = _mm_loadu_si128(reinterpret_cast<__m128i const*>(from));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to), half);
        return _mm_or_si128(_mm_cmpeq_epi16(half, _mm_set1_epi16('\n')), _mm_cmpeq_epi16(half, _mm_setzero_si128()));
    };
    __m128i const first = copyHalf(source, target);
    return static_cast<unsigned int>(_mm_movemask_epi8(_mm_packs_epi16(first, copyHalf(source + 16, target + 8))));
}

/// Four blocks. Most lines end in the first four, whose one mask costs no jump that depends on the line's length.
template <std::uint64_t (*Block)(char const*, char16_t*), std::size_t SourceStep>
std::uint64_t FourBlocks(char const* source, char16_t* target) {
    return Block(source, target) | Block(source + SourceStep, target + 16) << 16 |
           Block(source + 2 * SourceStep, target + 32) << 32 | Block(source + 3 * SourceStep, target + 48) << 48;
}

#endif

/// Decodes UTF-8 up to a line feed, a zero, the end, or what takes two units or is broken.
/// @param target  Has room for `length` units; those behind the result may be written over.
/// @param units   Receives the units written.
/// @return bytes decoded; source[result] is what ended it.
inline std::size_t DecodePlainText(char const* source, std::size_t length, char16_t* target, std::size_t& units) {
    auto const byte = [source](std::size_t place) { return static_cast<unsigned char>(source[place]); };
    auto const follows = [&](std::size_t place) { return place < length && (byte(place) & 0xC0) == 0x80; };
    std::size_t at = 0;
    char16_t* out = target;
#if defined(__SSE2__)
    if (length >= 64) {
        std::uint64_t const mask = FourBlocks<WidenBlock, 16>(source, target);
        at = static_cast<std::size_t>(std::countr_zero(mask)); // 64 without any
        out += at;
        if (mask != 0 && source[at] == '\n') {
            units = at;
            return at;
        }
    }
#endif
    while (at < length) {
#if defined(__SSE2__)
        if (length - at >= 16) {
            std::uint64_t const mask = WidenBlock(source + at, out);
            if (mask == 0) { // a jump, so that the next load need not wait for the mask
                at += 16;
                out += 16;
                continue;
            }
            auto const plain = static_cast<std::size_t>(std::countr_zero(mask));
            at += plain;
            out += plain;
        }
#endif
        unsigned char const lead = byte(at);
        if (lead == '\n' || lead == 0) {
            break;
        }
        std::size_t size = 1;
        unsigned int unit = lead;
        if (lead >= 0xC2 && lead < 0xE0 && follows(at + 1)) {
            unit = (lead & 0x1FU) << 6 | (byte(at + 1) & 0x3FU);
            size = 2;
        } else if (lead >= 0xE0 && lead < 0xF0 && follows(at + 1) && follows(at + 2)) {
            unit = (lead & 0xFU) << 12 | (byte(at + 1) & 0x3FU) << 6 | (byte(at + 2) & 0x3FU);
            if (unit < 0x800 || (unit & 0xF800) == 0xD800) {
                break;
            }
            size = 3;
        } else if (lead >= 0x80) {
            break;
        }
        *out++ = static_cast<char16_t>(unit);
        at += size;
    }
    units = static_cast<std::size_t>(out - target);
    return at;
}

/// Copies 16-bit units up to a line feed, a zero or the end.
/// @param source  May lie at any address.
/// @param target  Has room for `length` units; those behind the result may be written over.
/// @return units written.
inline std::size_t CopyPlainText(char const* source, std::size_t length, char16_t* target) {
    std::size_t at = 0;
#if defined(__SSE2__)
    for (; length - at >= 64; at += 64) {
        if (std::uint64_t const mask = FourBlocks<CopyBlock, 32>(source + 2 * at, target + at)) {
            return at + static_cast<std::size_t>(std::countr_zero(mask));
        }
    }
    for (; length - at >= 16; at += 16) {
        if (std::uint64_t const mask = CopyBlock(source + 2 * at, target + at)) {
            return at + static_cast<std::size_t>(std::countr_zero(mask));
        }
    }
#endif
    for (; at < length; ++at) {
        std::memcpy(target + at, source + 2 * at, sizeof *target);
        if (target[at] == u'\n' || target[at] == 0) {
            break;
        }
    }
    return at;
}

/// Reads a line of good UTF-8, or of 16-bit text, that is short, has no zero in it and lies whole in the stream's
/// buffer.
/// @param stream  May be null, as that of a closed file is.
/// @return false for any other, which is not read yet; `line` is empty then.
inline bool ReadPlainLine(FILE* stream, CXTString<char16_t>& line, bool isWide) {
    constexpr std::size_t LongestPlain = 256; // what a fresh string is given room for at once
    std::size_t const unit = isWide ? sizeof(char16_t) : 1;
    std::string_view const bytes = stream ? platform::PeekStream(stream) : std::string_view();
    std::size_t const length = std::min(bytes.size() / unit, LongestPlain);
    line.SetLength(length);
    std::size_t count = 0;
    std::size_t const stop = isWide ? (count = CopyPlainText(bytes.data(), length, line.GetText()))
                                    : DecodePlainText(bytes.data(), length, line.GetText(), count);
    if (stop == length || bytes[stop * unit] != '\n' || (isWide && bytes[stop * unit + 1] != 0)) {
        line.SetLength(0);
        return false;
    }
    line.SetLength(count);
    platform::SkipStream(stream, (stop + 1) * unit);
    return true;
}

} // namespace detail
