// SPDX-License-Identifier: MIT
// Case of single UTF-16 units beyond ASCII, the same in every locale: what the platform compares file names with.
// Only pairs that map onto each other count, so U+0130, U+017F, U+00B5 and U+212B stay as they are.

#pragma once

namespace platform {

/// The lower-case form of a unit, or the unit itself. Any thread.
[[nodiscard]] char16_t CharLowerW(char16_t unit);

/// The upper-case form of a unit, or the unit itself. Any thread.
[[nodiscard]] char16_t CharUpperW(char16_t unit);

} // namespace platform
