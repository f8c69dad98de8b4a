// SPDX-License-Identifier: MIT
// The numbers of the archive's stream that more than one of its sources needs.

#pragma once

namespace detail {

/// The class of a new object comes next, by its record.
inline constexpr unsigned short NewClassTag = 0xFFFF;

/// A tag of 32 bits follows; smaller tags take 16 bits.
inline constexpr unsigned short LongTag = 0x7FFF;

/// Marks a tag of 32 bits as that of a class; in 16 bits it is bit 15.
inline constexpr unsigned int ClassTagBit = 0x80000000;

/// The schema that is none.
inline constexpr unsigned int NoSchema = 0xFFFFFFFF;

/// Longer class names are known to nobody: a reader takes a name before it can look it up.
inline constexpr unsigned short MaxClassNameLength = 319;

/// What a reader may allocate on the word of the stream alone, in bytes. Beyond it the bytes must be there.
inline constexpr unsigned long long TrustedBytes = 0x10000;

} // namespace detail
