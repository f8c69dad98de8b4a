// SPDX-License-Identifier: MIT
// The string table: the rows of strings.inc, found by number and language.

#pragma once

#include <string_view>

namespace platform {

/// The text of row `id` in a language (platform/language.h), English in any but French; empty for an unknown number.
/// The view is of static storage and a zero stands behind it. Any thread.
[[nodiscard]] std::u16string_view FindString(unsigned id, unsigned short language);

/// Copies the text of row `id` in the calling thread's language, cut to `size` - 1 units, and a zero.
///
/// @return the units copied, without the zero; 0 for an unknown number, which leaves the buffer untouched, and for a
///         null buffer or a size below 1.
int LoadStringW(unsigned id, char16_t* buffer, int size);

} // namespace platform
