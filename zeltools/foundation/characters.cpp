// SPDX-License-Identifier: MIT
#include "zeltools/foundation/characters.h"

#include <algorithm>
#include <cctype>
#include <clocale>
#include <cstdint>
#include <cwchar>
#include <cwctype>
#include <iterator>
#include <string>

#if defined(__SSE2__)
#include <bit>
#include <emmintrin.h>
#endif

namespace {

struct UnitRange {
    char16_t first;
    char16_t last;
};

constexpr UnitRange digitRanges[] = {
#include "zeltools/foundation/digits.inc"
};

constexpr UnitRange letterRanges[] = {
#include "zeltools/foundation/letters.inc"
};

template <std::size_t N>
bool Holds(UnitRange const (&ranges)[N], char16_t unit) {
    auto const* range = std::lower_bound(std::begin(ranges), std::end(ranges), unit,
                                         [](UnitRange const& r, char16_t u) { return r.last < u; });
    return range != std::end(ranges) && range->first <= unit;
}

// A mapping that leaves the basic plane has no unit to stand for it.
char16_t OneUnit(std::wint_t mapped, char16_t otherwise) {
    return mapped < 0x10000 ? static_cast<char16_t>(mapped) : otherwise;
}

#if defined(__SSE2__)

template <typename T>
__m128i EqualCharacters(__m128i left, __m128i right) {
    return sizeof(T) == 1 ? _mm_cmpeq_epi8(left, right) : _mm_cmpeq_epi16(left, right);
}

// Characters beyond ASCII are negative here or beyond 'Z', and stay.
template <typename T>
__m128i LowerAsciiBlock(__m128i text) {
    if constexpr (sizeof(T) == 1) {
        __m128i const upper =
            _mm_and_si128(_mm_cmpgt_epi8(text, _mm_set1_epi8('A' - 1)), _mm_cmplt_epi8(text, _mm_set1_epi8('Z' + 1)));
        return _mm_or_si128(text, _mm_and_si128(upper, _mm_set1_epi8(0x20)));
    } else {
        __m128i const upper = _mm_and_si128(_mm_cmpgt_epi16(text, _mm_set1_epi16('A' - 1)),
                                            _mm_cmplt_epi16(text, _mm_set1_epi16('Z' + 1)));
        return _mm_or_si128(text, _mm_and_si128(upper, _mm_set1_epi16(0x20)));
    }
}

// Whether a block read at this place stays in the page that its first byte is in; 4096 is the smallest page there is.
template <typename T>
bool BlockStaysInPage(T const* text) {
    return reinterpret_cast<std::uintptr_t>(text) % 4096 <= 4096 - sizeof(__m128i);
}

#endif

// Compares a block at a step, and singly where a block would touch a page that its text may not reach. What stands
// behind a terminator within a page is read and ignored, which neither the address nor the thread sanitizer can know. A
// block lowers ASCII only: what differs then may still be the same in the locale, which single characters ask.
template <bool IgnoreCase, typename T>
#if defined(__SSE2__)
__attribute__((no_sanitize("address", "thread")))
#endif
int CompareTerminated(T const* left, T const* right) {
    auto const fold = [](T character) { return IgnoreCase ? xToLower(character) : character; };
    for (;;) {
#if defined(__SSE2__)
        if (BlockStaysInPage(left) && BlockStaysInPage(right)) {
            __m128i a = _mm_loadu_si128(reinterpret_cast<__m128i const*>(left));
            __m128i b = _mm_loadu_si128(reinterpret_cast<__m128i const*>(right));
            if constexpr (IgnoreCase) {
                a = LowerAsciiBlock<T>(a);
                b = LowerAsciiBlock<T>(b);
            }
            __m128i const ends = EqualCharacters<T>(a, _mm_setzero_si128());
            __m128i const same = _mm_andnot_si128(ends, EqualCharacters<T>(a, b));
            auto const stops = static_cast<unsigned>(_mm_movemask_epi8(same)) ^ 0xFFFFu;
            if (!stops) {
                left += sizeof(__m128i) / sizeof(T);
                right += sizeof(__m128i) / sizeof(T);
                continue;
            }
            std::size_t const place = static_cast<std::size_t>(std::countr_zero(stops)) / sizeof(T);
            left += place;
            right += place;
        }
#endif
        using Value = std::make_unsigned_t<T>;
        auto const a = static_cast<Value>(fold(*left++));
        auto const b = static_cast<Value>(fold(*right++));
        if (a != b)
            return a < b ? -1 : 1;
        if (a == 0)
            return 0;
    }
}

bool CollatesByValue() {
    char const* const name = std::setlocale(LC_COLLATE, nullptr);
    return !name || std::strcmp(name, "C") == 0 || std::strcmp(name, "POSIX") == 0;
}

// The C library's wide text: pairs become one character, lone surrogates stay and sort by their value.
std::wstring Widened(char16_t const* text, bool lower) {
    std::wstring wide;
    wide.reserve(xStrLen(text));
    for (; *text; ++text) {
        char16_t const unit = lower ? xToLower(*text) : *text;
        if ((unit & 0xFC00) == 0xD800 && (text[1] & 0xFC00) == 0xDC00) {
            wide.push_back(static_cast<wchar_t>(0x10000 + ((unit & 0x3FF) << 10) + (text[1] & 0x3FF)));
            ++text;
        } else {
            wide.push_back(static_cast<wchar_t>(unit));
        }
    }
    return wide;
}

std::string Lowered(char const* text) {
    std::string lowered(text);
    std::transform(lowered.begin(), lowered.end(), lowered.begin(), [](char byte) { return xToLower(byte); });
    return lowered;
}

} // namespace

// --- Characters -----------------------------------------------------------------------------------------------------

namespace detail {

char16_t LowerBeyondAscii(char16_t unit) {
    return OneUnit(std::towlower(unit), unit);
}

char16_t UpperBeyondAscii(char16_t unit) {
    return OneUnit(std::towupper(unit), unit);
}

char LowerBeyondAscii(char byte) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(byte)));
}

char UpperBeyondAscii(char byte) {
    return static_cast<char>(std::toupper(static_cast<unsigned char>(byte)));
}

bool IsSpaceBeyondAscii(char16_t unit) {
    return (unit >= 0x2000 && unit <= 0x200A) || unit == 0x0085 || unit == 0x00A0 || unit == 0x1680 || unit == 0x2028 ||
           unit == 0x2029 || unit == 0x202F || unit == 0x205F || unit == 0x3000;
}

bool IsDigitBeyondAscii(char16_t unit) {
    return Holds(digitRanges, unit);
}

bool IsAlphaBeyondAscii(char16_t unit) {
    return Holds(letterRanges, unit);
}

bool IsSpaceBeyondAscii(char byte) {
    return std::isspace(static_cast<unsigned char>(byte)) != 0;
}

bool IsAlphaBeyondAscii(char byte) {
    return std::isalpha(static_cast<unsigned char>(byte)) != 0;
}

} // namespace detail

// --- Strings --------------------------------------------------------------------------------------------------------

// Aligned blocks never cross into a page that the text does not touch, so reading past the terminator within one is
// sound; the address and thread sanitizers, which know of no pages, are kept out.
#if defined(__SSE2__)
__attribute__((no_sanitize("address", "thread"))) std::size_t xStrLen(char16_t const* text) {
    if (!text)
        return 0;
    auto const address = reinterpret_cast<std::uintptr_t>(text);
    if (address % alignof(char16_t) != 0) { // out of a packed record; blocks would see units cut in two
        char16_t const* end = text;
        while (*end)
            ++end;
        return static_cast<std::size_t>(end - text);
    }
    auto const skipped = static_cast<unsigned>(address % 16);
    auto const* block = reinterpret_cast<__m128i const*>(address - skipped);
    __m128i const zero = _mm_setzero_si128();
    auto mask = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_load_si128(block), zero))) >> skipped;
    if (mask)
        return static_cast<std::size_t>(std::countr_zero(mask)) / 2;
    do {
        mask = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_load_si128(++block), zero)));
    } while (!mask);
    auto const end = reinterpret_cast<std::uintptr_t>(block) + static_cast<unsigned>(std::countr_zero(mask));
    return (end - address) / 2;
}
#else
std::size_t xStrLen(char16_t const* text) {
    return text ? std::char_traits<char16_t>::length(text) : 0;
}
#endif

std::size_t xStrNLen(char const* text, std::size_t limit) {
    char const* const end = xMemChr(text, '\0', limit);
    return end ? static_cast<std::size_t>(end - text) : limit;
}

std::size_t xStrNLen(char16_t const* text, std::size_t limit) {
    std::size_t length = 0;
    while (length < limit && text[length])
        ++length;
    return length;
}

int xStrCmp(char16_t const* left, char16_t const* right) {
    return CompareTerminated<false>(left, right);
}

int xStrICmp(char const* left, char const* right) {
    return CompareTerminated<true>(left, right);
}

int xStrICmp(char16_t const* left, char16_t const* right) {
    return CompareTerminated<true>(left, right);
}

int xStrColl(char const* left, char const* right) {
    return std::strcoll(left, right);
}

int xStrColl(char16_t const* left, char16_t const* right) {
    if (CollatesByValue())
        return xStrCmp(left, right);
    return std::wcscoll(Widened(left, false).c_str(), Widened(right, false).c_str());
}

int xStrIColl(char const* left, char const* right) {
    return std::strcoll(Lowered(left).c_str(), Lowered(right).c_str());
}

int xStrIColl(char16_t const* left, char16_t const* right) {
    if (!CollatesByValue())
        return std::wcscoll(Widened(left, true).c_str(), Widened(right, true).c_str());
    return xStrICmp(left, right);
}

char16_t const* xMemChr(char16_t const* text, char16_t character, std::size_t length) {
    std::size_t i = 0;
#if defined(__SSE2__)
    __m128i const wanted = _mm_set1_epi16(static_cast<short>(character));
    for (; i + 8 <= length; i += 8) {
        __m128i const block = _mm_loadu_si128(reinterpret_cast<__m128i const*>(text + i));
        auto const mask = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(block, wanted)));
        if (mask)
            return text + i + std::countr_zero(mask) / 2;
    }
#endif
    for (; i < length; ++i) {
        if (text[i] == character)
            return text + i;
    }
    return nullptr;
}

char16_t const* xStrChr(char16_t const* text, char16_t character) {
    for (; *text != character; ++text) {
        if (!*text)
            return nullptr;
    }
    return text;
}

char16_t const* xStrStr(char16_t const* text, char16_t const* part) {
    if (!*part)
        return text;
    std::size_t const partLength = xStrLen(part);
    std::size_t left = xStrLen(text);
    while (left >= partLength) {
        char16_t const* const found = xMemChr(text, *part, left - partLength + 1);
        if (!found)
            return nullptr;
        if (std::equal(part, part + partLength, found))
            return found;
        left -= static_cast<std::size_t>(found - text) + 1;
        text = found + 1;
    }
    return nullptr;
}
