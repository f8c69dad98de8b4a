// SPDX-License-Identifier: MIT
// The scanner behind CXTString's ScanS family: scanf's language in the secure dialect of the original C library, for
// narrow text and for UTF-16.
//
//     int width = 0;
//     char16_t unit[8];
//     xScan(u"12 cm", u"%d %s", &width, unit, 8u);    // 2
//
// Every text target (`%s`, `%S`, `%c`, `%C`, `%[`) is followed by an unsigned int: its room in characters, for `%s` and
// `%[` with the terminator. Text that does not fit leaves an empty target and ends the scan.
//
// Widths and sizes are those of text_format.h: `%s` fills text of the format's own width, `%S` of the other, `%hs`
// narrow, `%ls` wide; `%ld` is an int, `%lld` and `%I64d` a long long; `%f` is a float, `%lf` a double, `%Lf` a long
// double. A number beyond its target keeps its low bits; beyond 64 bits it is the nearest that 64 bits hold. A sign
// is taken for unsigned forms too. Blanks are those of xIsSpace; the decimal point is that of the process's C locale.

#pragma once

#include "zeltools/foundation/api.h"

#include <cstdarg>

/// Reads values out of a zero-terminated text.
///
/// @param arguments Pointers to targets of the types that the format names, text targets followed by their room. A
///                  null target ends the scan. Targets that were not reached are untouched.
/// @return Count of targets filled (`%n` and suppressed ones are not counted); -1 when the text ended before the first
///         conversion, or for a null text or format.
/// Threads: any; as with scanf, not while another thread calls setlocale.
ZEL_API int xScanV(char const* text, char const* format, va_list arguments);
ZEL_API int xScanV(char16_t const* text, char16_t const* format, va_list arguments);

/// The same with the targets in the call.
ZEL_API int xScan(char const* text, char const* format, ...);
ZEL_API int xScan(char16_t const* text, char16_t const* format, ...);
