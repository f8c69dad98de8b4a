// SPDX-License-Identifier: MIT
// The C library's character and string functions, for UTF-16 as for bytes. The C library's own wide functions have
// another width on this system and never see a char16_t.
//
//     xStrLen(u"Wood.JPG");                    // 8
//     xStrICmp(u"Wood.JPG", u"wood.jpg");      // 0
//     xIsSpace(u'\u00A0');                     // true, in every locale
//
// Case of units beyond ASCII follows the process's C locale (setlocale), ASCII is the same in all of them. Classes of
// UTF-16 units are Unicode's in every locale; those of bytes follow the locale. A surrogate is of no class.
//
// Strings end at their first zero. None of the functions allocates but xStrColl and xStrIColl, for long text.
// Threads: any; as with the C library, not while another thread calls setlocale.

#pragma once

#include "zeltools/foundation/api.h"

#include <cstddef>
#include <cstring>

namespace detail {

ZEL_API char16_t LowerBeyondAscii(char16_t unit);
ZEL_API char16_t UpperBeyondAscii(char16_t unit);
ZEL_API char LowerBeyondAscii(char byte);
ZEL_API char UpperBeyondAscii(char byte);
ZEL_API bool IsSpaceBeyondAscii(char16_t unit);
ZEL_API bool IsDigitBeyondAscii(char16_t unit);
ZEL_API bool IsAlphaBeyondAscii(char16_t unit);
ZEL_API bool IsSpaceBeyondAscii(char byte);
ZEL_API bool IsAlphaBeyondAscii(char byte);

template <typename T>
[[nodiscard]] constexpr bool IsAscii(T character) {
    if constexpr (sizeof(T) == 1)
        return static_cast<unsigned char>(character) < 0x80;
    else
        return character < 0x80;
}

/// Lower case of ASCII letters, everything else as it is: the C locale's.
template <typename T>
[[nodiscard]] constexpr T LowerAscii(T character) {
    return character >= T('A') && character <= T('Z') ? static_cast<T>(character + 32) : character;
}

template <typename T>
[[nodiscard]] constexpr T UpperAscii(T character) {
    return character >= T('a') && character <= T('z') ? static_cast<T>(character - 32) : character;
}

} // namespace detail

// --- Characters -----------------------------------------------------------------------------------------------------

/// Lower case in the process's C locale.
template <typename T>
[[nodiscard]] inline T xToLower(T character) {
    return detail::IsAscii(character) ? detail::LowerAscii(character) : detail::LowerBeyondAscii(character);
}

/// Upper case in the process's C locale.
template <typename T>
[[nodiscard]] inline T xToUpper(T character) {
    return detail::IsAscii(character) ? detail::UpperAscii(character) : detail::UpperBeyondAscii(character);
}

/// Whether a character is a blank: U+0009 to U+000D, U+0020, and for UTF-16 also U+0085, U+00A0, U+1680, U+2000 to
/// U+200A, U+2028, U+2029, U+202F, U+205F and U+3000.
template <typename T>
[[nodiscard]] inline bool xIsSpace(T character) {
    if (detail::IsAscii(character))
        return character == T(' ') || (character >= T('\t') && character <= T('\r'));
    return detail::IsSpaceBeyondAscii(character);
}

/// Whether a character is a decimal digit. For UTF-16 that is every decimal digit of Unicode, and U+00B9, U+00B2 and
/// U+00B3: who needs 0 to 9 compares with them.
template <typename T>
[[nodiscard]] inline bool xIsDigit(T character) {
    if (detail::IsAscii(character))
        return character >= T('0') && character <= T('9');
    if constexpr (sizeof(T) == 1)
        return false;
    else
        return detail::IsDigitBeyondAscii(character);
}

/// Whether a character is a letter.
template <typename T>
[[nodiscard]] inline bool xIsAlpha(T character) {
    if (detail::IsAscii(character)) {
        T const lower = detail::LowerAscii(character);
        return lower >= T('a') && lower <= T('z');
    }
    return detail::IsAlphaBeyondAscii(character);
}

// --- Strings --------------------------------------------------------------------------------------------------------

/// Count of characters in front of the terminator. Null counts as empty.
[[nodiscard]] inline std::size_t xStrLen(char const* text) {
    return text ? std::strlen(text) : 0;
}
[[nodiscard]] ZEL_API std::size_t xStrLen(char16_t const* text);

/// The same, but never looks beyond `limit` characters: for text that may lack its terminator.
[[nodiscard]] ZEL_API std::size_t xStrNLen(char const* text, std::size_t limit);
[[nodiscard]] ZEL_API std::size_t xStrNLen(char16_t const* text, std::size_t limit);

/// Compares by the characters' unsigned values: below 0, 0 or above 0.
[[nodiscard]] inline int xStrCmp(char const* left, char const* right) {
    return std::strcmp(left, right);
}
[[nodiscard]] ZEL_API int xStrCmp(char16_t const* left, char16_t const* right);

/// Compares by value with both sides lowered by xToLower. `_` comes before the letters.
[[nodiscard]] ZEL_API int xStrICmp(char const* left, char const* right);
[[nodiscard]] ZEL_API int xStrICmp(char16_t const* left, char16_t const* right);

/// Compares in the order of the process's C locale; in the C locale that is xStrCmp.
[[nodiscard]] ZEL_API int xStrColl(char const* left, char const* right);
[[nodiscard]] ZEL_API int xStrColl(char16_t const* left, char16_t const* right);

/// The same with both sides lowered by xToLower; in the C locale that is xStrICmp.
[[nodiscard]] ZEL_API int xStrIColl(char const* left, char const* right);
[[nodiscard]] ZEL_API int xStrIColl(char16_t const* left, char16_t const* right);

/// The first occurrence of a character among `length`, or null. Zeros are characters like any other.
[[nodiscard]] inline char const* xMemChr(char const* text, char character, std::size_t length) {
    return length ? static_cast<char const*>(std::memchr(text, character, length)) : nullptr;
}
[[nodiscard]] ZEL_API char16_t const* xMemChr(char16_t const* text, char16_t character, std::size_t length);

/// The first occurrence of a character in front of the terminator or at it, or null.
[[nodiscard]] inline char const* xStrChr(char const* text, char character) {
    return std::strchr(text, character);
}
[[nodiscard]] ZEL_API char16_t const* xStrChr(char16_t const* text, char16_t character);

/// The first occurrence of a text in another, or null. The empty text is found at the beginning.
[[nodiscard]] inline char const* xStrStr(char const* text, char const* part) {
    return std::strstr(text, part);
}
[[nodiscard]] ZEL_API char16_t const* xStrStr(char16_t const* text, char16_t const* part);
