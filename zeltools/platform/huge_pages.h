// SPDX-License-Identifier: MIT
// Large pages for large blocks that are read all over, as hash tables are. Advice only: a system without them, or
// one that is told not to use them, answers with ordinary pages, and nothing but speed changes.

#pragma once

#include <cstddef>

namespace platform {

/// The size and the alignment of a large page, in bytes.
inline constexpr std::size_t HugePageSize = std::size_t{2} << 20;

/// From this block size in bytes a large page is at least half used.
inline constexpr std::size_t HugePagesWorthwhile = HugePageSize / 2;

/// Asks for large pages under a block that begins and ends at multiples of HugePageSize. Its content is unchanged.
/// @param bytes  How much of the block will be used. A last page that is not half used stays in small ones.
/// Errors:  none; a refusal is ignored and leaves GetLastError alone.
/// Threads: any.
void PreferHugePages(void* block, std::size_t bytes) noexcept;

} // namespace platform
