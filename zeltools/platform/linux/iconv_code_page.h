// SPDX-License-Identifier: MIT
// The code pages other than UTF-8, taken from iconv by their number on the original platform.
//
// A page of single bytes becomes a table at its first use, which needs no descriptor and no lock afterwards. The
// other pages run through iconv, on descriptors that each thread keeps for itself.

#pragma once

#include "zeltools/platform/utf8.h"

#include <cstddef>

namespace platform {

/// Whether iconv on this system has the page. Any thread.
[[nodiscard]] bool IsIconvCodePage(unsigned codePage);

/// Converts into a target of `room` units, which a null target measures without limit. The page must be known. Any
/// thread.
TextConversion DecodeIconv(unsigned codePage, char const* source, std::size_t length, char16_t* target,
                           std::size_t room);

/// Converts into a target of `room` bytes, which a null target measures without limit. Likewise.
TextConversion EncodeIconv(unsigned codePage, char16_t const* source, std::size_t length, char* target,
                           std::size_t room);

} // namespace platform
