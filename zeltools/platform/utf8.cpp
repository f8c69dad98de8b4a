// SPDX-License-Identifier: MIT
#include "zeltools/platform/utf8.h"

#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace platform {

namespace {

constexpr char16_t replacement = 0xFFFD;

bool IsContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}
bool IsHigh(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}
bool IsLow(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

// Length of the maximal part at `source` that is the beginning of a character, at least 1. The second byte of some
// leads has a narrower range: it keeps out overlong forms, surrogates and what lies beyond U+10FFFF.
std::ptrdiff_t InvalidPartLength(unsigned char const* source, unsigned char const* end) {
    unsigned char const lead = source[0];
    std::ptrdiff_t const wanted = lead >= 0xF0 && lead <= 0xF4   ? 4
                                  : lead >= 0xE0 && lead <= 0xEF ? 3
                                  : lead >= 0xC2 && lead <= 0xDF ? 2
                                                                 : 1;
    std::ptrdiff_t length = 1;
    while (length < wanted && source + length < end) {
        unsigned char const byte = source[length];
        unsigned char const lowest = length > 1 ? 0x80 : lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
        unsigned char const highest = length > 1 ? 0xBF : lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
        if (byte < lowest || byte > highest)
            break;
        ++length;
    }
    return length;
}

// How a conversion treats its target. One body serves all: what a mode does not need is compiled away.
enum class Mode {
    Measure, ///< Only counts.
    Roomy,   ///< Writes, with room for the worst case.
    Bounded, ///< Writes, and looks before each step whether it fits.
};

// A block of sixteen characters is looked at once: its mask tells where the next one beyond ASCII stands, so that a
// letter with an accent now and then neither waits for another load nor leaves the block. The ASCII between two such
// is stored as a whole block, whose rest is written over next.
constexpr std::ptrdiff_t blockSize = 16;
// The last load of a block begins at its last character.
constexpr std::ptrdiff_t blockReach = 2 * blockSize;

template <Mode mode>
TextConversion Decode(unsigned char const* source, std::size_t length, char16_t* target, std::size_t room) {
    constexpr bool write = mode != Mode::Measure;
    unsigned char const* const end = source + length;
    std::size_t out = 0;
    bool invalid = false;
    auto const fits = [&](std::size_t units) { return mode != Mode::Bounded || room - out >= units; };
    auto const put = [&](unsigned unit) {
        if constexpr (write)
            target[out] = static_cast<char16_t>(unit);
        ++out;
    };
    while (source < end) {
#if defined(__SSE2__)
        auto const putBlock = [&](__m128i block) {
            if constexpr (write) {
                __m128i const zero = _mm_setzero_si128();
                _mm_storeu_si128(reinterpret_cast<__m128i*>(target + out), _mm_unpacklo_epi8(block, zero));
                _mm_storeu_si128(reinterpret_cast<__m128i*>(target + out + 8), _mm_unpackhi_epi8(block, zero));
            }
        };
        bool inBlocks = true;
        while (inBlocks && end - source >= blockReach && fits(blockReach)) {
            __m128i block = _mm_loadu_si128(reinterpret_cast<__m128i const*>(source));
            auto const beyond = static_cast<unsigned>(_mm_movemask_epi8(block)) | 1u << blockSize;
            putBlock(block);
            if (beyond == 1u << blockSize) { // a jump, so that the next load need not wait for the mask
                source += blockSize;
                out += blockSize;
                continue;
            }
            std::ptrdiff_t at = 0;
            for (;;) {
                int const ascii = std::countr_zero(beyond >> at);
                at += ascii;
                out += static_cast<std::size_t>(ascii);
                while (at < blockSize && (beyond >> at & 1) != 0) {
                    unsigned char const lead = source[at];
                    inBlocks = lead >= 0xC2 && lead < 0xE0 && IsContinuation(source[at + 1]);
                    if (!inBlocks)
                        break;
                    put((lead & 0x1Fu) << 6 | (source[at + 1] & 0x3Fu));
                    at += 2;
                }
                if (at >= blockSize || !inBlocks)
                    break;
                block = _mm_loadu_si128(reinterpret_cast<__m128i const*>(source + at));
                putBlock(block);
            }
            source += at;
        }
#endif
        if (*source < 0x80) {
            if (!fits(1))
                return {out, false, invalid};
            put(*source++);
            continue;
        }
        // Text beyond ASCII comes in runs, mostly of one length; it stays in this loop.
        do {
            while (end - source >= 3 && (source[0] & 0xF0) == 0xE0) {
                unsigned const unit = (source[0] & 0x0Fu) << 12 | (source[1] & 0x3Fu) << 6 | (source[2] & 0x3Fu);
                bool const shaped = ((source[1] ^ 0x80u) | (source[2] ^ 0x80u)) < 0x40;
                if (!shaped || unit < 0x800 || unit - 0xD800 < 0x800)
                    break;
                if (!fits(1))
                    return {out, false, invalid};
                put(unit);
                source += 3;
            }
            if (source == end || *source < 0x80)
                break;
            if (!fits(1))
                return {out, false, invalid};
            unsigned char const lead = *source;
            if (lead >= 0xC2 && lead < 0xE0 && end - source >= 2 && IsContinuation(source[1])) {
                put((lead & 0x1Fu) << 6 | (source[1] & 0x3Fu));
                source += 2;
            } else if (std::ptrdiff_t const part = InvalidPartLength(source, end); part == 4) {
                if (!fits(2))
                    return {out, false, invalid};
                unsigned const character =
                    (lead & 0x07u) << 18 | (source[1] & 0x3Fu) << 12 | (source[2] & 0x3Fu) << 6 | (source[3] & 0x3Fu);
                put(0xD7C0 + (character >> 10));
                put(0xDC00 + (character & 0x3FF));
                source += 4;
            } else {
                put(replacement);
                invalid = true;
                source += part;
            }
        } while (source < end && *source >= 0x80);
    }
    return {out, true, invalid};
}

template <Mode mode>
TextConversion Encode(char16_t const* source, std::size_t length, char* target, std::size_t room) {
    constexpr bool write = mode != Mode::Measure;
    char16_t const* const end = source + length;
    std::size_t out = 0;
    bool invalid = false;
    auto const fits = [&](std::size_t bytes) { return mode != Mode::Bounded || room - out >= bytes; };
    auto const put = [&](auto... bytes) {
        if constexpr (write) {
            std::size_t place = out;
            ((target[place++] = static_cast<char>(bytes)), ...);
        }
        out += sizeof...(bytes);
    };
    auto const put3 = [&](unsigned unit) {
        put(0xE0u | unit >> 12, 0x80u | (unit >> 6 & 0x3Fu), 0x80u | (unit & 0x3Fu));
    };
    while (source < end) {
#if defined(__SSE2__)
        auto const load = [](char16_t const* at) { return _mm_loadu_si128(reinterpret_cast<__m128i const*>(at)); };
        auto const findBeyond = [](__m128i first, __m128i second) {
            __m128i const above = _mm_set1_epi16(static_cast<short>(0xFF80));
            __m128i const ascii = _mm_packs_epi16(_mm_cmpeq_epi16(_mm_and_si128(first, above), _mm_setzero_si128()),
                                                  _mm_cmpeq_epi16(_mm_and_si128(second, above), _mm_setzero_si128()));
            return static_cast<unsigned>(_mm_movemask_epi8(ascii)) ^ 0x1FFFFu;
        };
        auto const putBlock = [&](std::size_t place, __m128i first, __m128i second) {
            if constexpr (write)
                _mm_storeu_si128(reinterpret_cast<__m128i*>(target + place), _mm_packus_epi16(first, second));
        };
        bool inBlocks = true;
        while (inBlocks && end - source >= blockSize && fits(2 * blockReach)) {
            __m128i first = load(source);
            __m128i second = load(source + 8);
            unsigned const beyond = findBeyond(first, second);
            putBlock(out, first, second);
            if (beyond == 1u << blockSize) {
                source += blockSize;
                out += blockSize;
                continue;
            }
            std::ptrdiff_t at = 0;
            for (;;) {
                int const run = std::countr_zero(beyond >> at);
                at += run;
                out += static_cast<std::size_t>(run);
                while (at < blockSize && (beyond >> at & 1) != 0) {
                    unsigned const unit = source[at];
                    inBlocks = unit < 0x800;
                    if (!inBlocks)
                        break;
                    put(0xC0u | unit >> 6, 0x80u | (unit & 0x3Fu));
                    ++at;
                }
                if (at >= blockSize || !inBlocks)
                    break;
                inBlocks = end - source - at >= blockSize;
                if (!inBlocks)
                    break;
                first = load(source + at);
                second = load(source + at + 8);
                putBlock(out, first, second);
            }
            source += at;
        }
        if (std::ptrdiff_t const rest = end - source; rest < blockSize && length >= blockSize && fits(blockSize)) {
            // The rest is seen in the last block. Where that is ASCII, what is written again is the same as before.
            __m128i const first = load(end - blockSize);
            __m128i const second = load(end - blockSize / 2);
            if (findBeyond(first, second) == 1u << blockSize) {
                out += static_cast<std::size_t>(rest);
                putBlock(out - blockSize, first, second);
                break;
            }
        }
#endif
        // Stays here through a run beyond ASCII, and to the end where no block is left.
        while (source < end) {
            if constexpr (mode == Mode::Roomy) {
                // Three bytes go out as four in one store; the fourth is the next character's.
                while (end - source >= 2 && *source >= 0x800 && (*source & 0xF800) != 0xD800) {
                    unsigned const unit = *source++;
                    unsigned const bytes =
                        (0xE0u | unit >> 12) | (0x80u | (unit >> 6 & 0x3Fu)) << 8 | (0x80u | (unit & 0x3Fu)) << 16;
                    std::memcpy(target + out, &bytes, sizeof bytes);
                    out += 3;
                }
            }
            char16_t const unit = *source;
            if (unit < 0x80) {
                if (!fits(1))
                    return {out, false, invalid};
                put(unit);
                ++source;
                if (end - source >= blockSize)
                    break;
                continue;
            }
            if (unit < 0x800) {
                if (!fits(2))
                    return {out, false, invalid};
                put(0xC0u | unit >> 6, 0x80u | (unit & 0x3Fu));
                ++source;
            } else if (unit < 0xD800 || unit > 0xDFFF) {
                if (!fits(3))
                    return {out, false, invalid};
                put3(unit);
                ++source;
            } else if (IsHigh(unit) && end - source >= 2 && IsLow(source[1])) {
                if (!fits(4))
                    return {out, false, invalid};
                unsigned const character = 0x10000u + ((unit & 0x3FFu) << 10) + (source[1] & 0x3FFu);
                put(0xF0u | character >> 18, 0x80u | (character >> 12 & 0x3Fu), 0x80u | (character >> 6 & 0x3Fu),
                    0x80u | (character & 0x3Fu));
                source += 2;
            } else {
                if (!fits(3))
                    return {out, false, invalid};
                put3(replacement);
                invalid = true;
                ++source;
            }
        }
    }
    return {out, true, invalid};
}

} // namespace

std::size_t Utf8ToUtf16(char const* source, std::size_t length, char16_t* target) {
    return DecodeUtf8(source, length, target, Utf16Room(length)).length;
}

std::size_t Utf16ToUtf8(char16_t const* source, std::size_t length, char* target) {
    return EncodeUtf8(source, length, target, Utf8Room(length)).length;
}

std::size_t Utf8Length(char16_t const* source, std::size_t length) {
    std::size_t bytes = 0;
    std::size_t i = 0;
#if defined(__SSE2__)
    // Three bytes a unit, less one below U+0800, less another one below U+0080; a pair takes four instead of six, and
    // is told by a second load one unit further on. A mask is -1 where it holds, so the lanes sum up the corrections.
    constexpr std::size_t blocksBeforeLanesOverflow = 8000;
    __m128i const zero = _mm_setzero_si128();
    __m128i const surrogate = _mm_set1_epi16(static_cast<short>(0xFC00));
    while (length - i >= 9) {
        __m128i lanes = zero;
        std::size_t blocks = 0;
        for (; blocks < blocksBeforeLanesOverflow && length - i >= 9; ++blocks, i += 8) {
            __m128i const units = _mm_loadu_si128(reinterpret_cast<__m128i const*>(source + i));
            __m128i const next = _mm_loadu_si128(reinterpret_cast<__m128i const*>(source + i + 1));
            lanes = _mm_add_epi16(lanes, _mm_cmpeq_epi16(_mm_subs_epu16(units, _mm_set1_epi16(0x7F)), zero));
            lanes = _mm_add_epi16(lanes, _mm_cmpeq_epi16(_mm_subs_epu16(units, _mm_set1_epi16(0x7FF)), zero));
            __m128i const high =
                _mm_cmpeq_epi16(_mm_and_si128(units, surrogate), _mm_set1_epi16(static_cast<short>(0xD800)));
            __m128i const low =
                _mm_cmpeq_epi16(_mm_and_si128(next, surrogate), _mm_set1_epi16(static_cast<short>(0xDC00)));
            __m128i const pair = _mm_and_si128(high, low);
            lanes = _mm_add_epi16(lanes, _mm_add_epi16(pair, pair));
        }
        alignas(16) short sums[8];
        _mm_store_si128(reinterpret_cast<__m128i*>(sums), lanes);
        bytes += blocks * 24;
        for (short const sum : sums)
            bytes -= static_cast<std::size_t>(-sum);
    }
    // A pair across the border: its low half, taken alone below, counts three, and the block has taken off two.
#endif
    for (; i < length; ++i) {
        char16_t const unit = source[i];
        bytes += unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3;
        if (IsHigh(unit) && i + 1 < length && IsLow(source[i + 1]))
            bytes -= 2;
    }
    return bytes;
}

TextConversion DecodeUtf8(char const* source, std::size_t length, char16_t* target, std::size_t room) {
    auto const* const bytes = reinterpret_cast<unsigned char const*>(source);
    if (!target)
        return Decode<Mode::Measure>(bytes, length, nullptr, 0);
    return room >= Utf16Room(length) ? Decode<Mode::Roomy>(bytes, length, target, room)
                                     : Decode<Mode::Bounded>(bytes, length, target, room);
}

TextConversion EncodeUtf8(char16_t const* source, std::size_t length, char* target, std::size_t room) {
    if (!target)
        return Encode<Mode::Measure>(source, length, nullptr, 0);
    return room >= Utf8Room(length) ? Encode<Mode::Roomy>(source, length, target, room)
                                    : Encode<Mode::Bounded>(source, length, target, room);
}

} // namespace platform
