// SPDX-License-Identifier: MIT
// Two raw converters between the Unicode forms, whose results are part of stored data: they keep to their own rules
// where these differ from Unicode's. Text for people goes through foundation/string_conversion.h.

#pragma once

#include "zeltools/foundation/api.h"

/// Decodes a zero-terminated UTF-8 text of one- to three-byte sequences.
///
/// @param source  The bytes. A four-byte sequence, a byte that begins none and a sequence that is cut short are faults.
///                The shortest form is not insisted upon: C0 80 gives U+0000, ED A0 80 gives U+D800.
/// @param target  Room for as many units as there are bytes, and one; null only checks the text.
///
/// | source            | without target         | with target                                               |
/// |-------------------|------------------------|-----------------------------------------------------------|
/// | a good text       | its bytes, no terminator | the units written, terminator included                  |
/// | empty             | 0                      | 1, with the terminator written                            |
/// | a fault, null     | 0                      | 0, with the units before the fault and a terminator       |
///
/// A text whose number would exceed an int is a fault. Threads: any.
ZEL_API int xUTF8ToUTF16(char const* source, char16_t* target);

/// Widens UTF-16 units to 32 bits, and joins surrogate pairs without the offset of 0x10000 that Unicode adds: the pair
/// D83D DE00 gives 0xF600. Stored values are in this form.
///
/// A high surrogate whose next unit is no low surrogate writes nothing, and that unit is consumed too; as the last unit
/// it writes nothing. A low surrogate alone is copied.
///
/// @param target  Room for `count` values.
/// @return the values written; 0 for a count below 1 or a null pointer. Threads: any.
ZEL_API int xUTF16ToUTF32(char16_t const* source, int count, char32_t* target);
