// SPDX-License-Identifier: MIT
// The formatter behind CXTString's Format family: printf's language in the dialect of the original C library, for
// narrow text and for UTF-16.
//
//     char16_t text[32];
//     int const count = xFormat(text, 32, u"%s: %.1f %%", u"load", 99.5);    // 12, u"load: 99.5 %"
//
// Differences from the C library of this system:
//
// | Form                               | Meaning                                                                   |
// |------------------------------------|---------------------------------------------------------------------------|
// | `%s`, `%c`                         | text of the format's own width; `%S` and `%C` of the other                 |
// | `%hs` `%hc`, `%ls` `%ws` `%lc`     | narrow; wide, in either format                                            |
// | `%ld`, `%I32d`; `%lld`, `%I64d`    | 32 bits; 64 bits. `%Id`, `%zd`, `%td`, `%jd` are 64 bits                  |
// | `%p`                               | 16 capital hexadecimal digits                                             |
// | `%a`                               | always 13 digits where no precision is given                              |
// | `%05s`, `%05c`                     | padded with zeros                                                         |
// | null text                          | `(null)`, cut by a precision                                              |
// | `%n`                               | takes its pointer and writes nothing                                      |
// | `%y`, `%ll` and other non-forms    | the letter that does not fit stands as text; no argument is taken         |
//
// Text of the other width is converted on code page 0. The decimal point is that of the process's C locale.

#pragma once

#include "zeltools/foundation/api.h"

#include <cstdarg>
#include <cstddef>

/// Formats arguments into a buffer.
///
/// @param target    Receives the text and a terminator; null: only count.
/// @param capacity  Room in characters, terminator included. Text that does not fit is cut, and always terminated
///                  unless the room is 0.
/// @param format    As above. Null gives -1.
/// @param arguments Of the types that the format names; left in an indeterminate state, as by vprintf.
/// @return Count of the whole text without its terminator, whether it fitted or not; -1 when it exceeds an int, with
///         an empty target.
/// Threads: any; as with printf, not while another thread calls setlocale.
ZEL_API int xFormatV(char* target, std::size_t capacity, char const* format, va_list arguments);
ZEL_API int xFormatV(char16_t* target, std::size_t capacity, char16_t const* format, va_list arguments);

/// The same with the arguments in the call.
ZEL_API int xFormat(char* target, std::size_t capacity, char const* format, ...);
ZEL_API int xFormat(char16_t* target, std::size_t capacity, char16_t const* format, ...);
