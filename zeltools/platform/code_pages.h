// SPDX-License-Identifier: MIT
// Text in a narrow code page to UTF-16 and back. UTF-8 has its own fast path, other pages are taken from iconv.
//
// Two ways in. The platform calls measure first and write then:
//
//     int const units = MultiByteToWideChar(CodePageAcp, 0, bytes, length, nullptr, 0);
//     MultiByteToWideChar(CodePageAcp, 0, bytes, length, target, units);
//
// The UTF-8 forms of utf8.h take one pass, into a buffer that is large enough for the worst case.
//
// Invalid input becomes U+FFFD, one for each maximal invalid part of UTF-8; a character that the page lacks becomes
// `?`, two of them where it takes two units. Nearest looks ("A" for U+0100) are not tried.

#pragma once

#include "zeltools/platform/utf8.h"

namespace platform {

inline constexpr unsigned CodePageAcp = 0;      ///< The narrow code page of this process, see GetACP.
inline constexpr unsigned CodePageUtf8 = 65001; ///< UTF-8.

inline constexpr unsigned MultiByteErrInvalidChars = 0x08; ///< Invalid input fails with error 1113.
inline constexpr unsigned WideCharErrInvalidChars = 0x80;  ///< Likewise for lone surrogates; UTF-8 only.

inline constexpr unsigned ErrorArithmeticOverflow = 534;    ///< The result's length exceeds an int.
inline constexpr unsigned ErrorInvalidFlags = 1004;         ///< A flag that the call does not know.
inline constexpr unsigned ErrorNoUnicodeTranslation = 1113; ///< Invalid input, where a flag refuses it.

/// The code page that 0 stands for: what SetACP said last, else the number in the environment variable
/// ZELTOOLS_CODEPAGE, else 65001. Any thread.
[[nodiscard]] unsigned GetACP();

/// Chooses what code page 0 stands for; 0 returns to the environment's choice. A page that iconv does not know is
/// refused: false, nothing changes. Any thread; conversions that run at the time keep the page they began with.
bool SetACP(unsigned codePage);

/// Converts bytes of a code page to UTF-16.
///
/// @param codePage      CodePageAcp, CodePageUtf8 or another page's number, such as 1252 or 932.
/// @param flags         0 or MultiByteErrInvalidChars.
/// @param source        The bytes; may hold zeros. Must not overlap the target.
/// @param sourceLength  Count of bytes; -1: up to and with the terminating zero, which is then converted too.
/// @param target        Receives the units. No terminator is added to an explicit length.
/// @param targetLength  Room in units; 0 only measures, and the target is not touched. What lies
///                      behind the result, within the room, may be written over.
/// @return Count of units, or 0 with GetLastError: 87 for a bad argument or an empty source, 122 for a target that is
///         too small (it may then hold the beginning), 534 for a result beyond an int, 1004 for unknown flags, 1113 for
///         invalid input when the flag asks for it.
/// Threads: any.
int MultiByteToWideChar(unsigned codePage, unsigned flags, char const* source, int sourceLength, char16_t* target,
                        int targetLength);

/// Converts UTF-16 to bytes of a code page. Arguments, result, errors and threads are those of MultiByteToWideChar
/// with bytes and units exchanged; `flags` is 0 or WideCharErrInvalidChars.
int WideCharToMultiByte(unsigned codePage, unsigned flags, char16_t const* source, int sourceLength, char* target,
                        int targetLength);

} // namespace platform
