// SPDX-License-Identifier: MIT
// Counted strings of the original platform's component services: UTF-16 with its length in bytes in front.

#pragma once

namespace platform {

/// Copies a terminated text into a new counted string, which SysFreeString frees; null for null.
///
/// The pointer is to the first unit. The four bytes before it hold the length in bytes, without the terminator that
/// stands behind the last unit. Any thread.
[[nodiscard]] char16_t* SysAllocString(char16_t const* text);

/// Frees a counted string; does nothing for null. Any thread.
void SysFreeString(char16_t* text);

/// Units in a counted string, without the terminator; 0 for null. Any thread.
[[nodiscard]] unsigned SysStringLen(char16_t const* text);

} // namespace platform
