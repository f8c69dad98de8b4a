// SPDX-License-Identifier: MIT
// The process's environment. Names ignore case, beyond ASCII too; where several variables differ by case only, the one
// spelled exactly as asked wins. Bytes that are not UTF-8 become U+FFFD.
//
// Threads: any, as long as nobody changes the environment meanwhile.

#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Gives the value of a variable. False, with `value` untouched, when there is none.
bool GetEnvironmentVariableW(std::u16string_view name, std::u16string& value);

/// Replaces each `%NAME%` by its value. Unknown names stay with their percent signs; values are not expanded again.
std::u16string ExpandEnvironmentStrings(std::u16string_view text);

/// ExpandEnvironmentStrings into a buffer.
///
/// @param out   Receives the terminated result when it has room for it, and is untouched otherwise. May be null.
/// @param size  Units that `out` has room for.
/// @return units needed, terminator included, whether there was room or not.
unsigned int ExpandEnvironmentStringsW(std::u16string_view text, char16_t* out, unsigned int size);

} // namespace platform
