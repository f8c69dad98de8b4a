// SPDX-License-Identifier: MIT
// A scan that tells where it ended, for scanning what arrives piece by piece.

#pragma once

#include <cstdarg>
#include <cstddef>

namespace detail {

struct ScanEnd {
    std::size_t consumed = 0; ///< Characters that the scan took.
    bool hasDoneAll = false;  ///< The whole format was carried out.
    bool metEnd = false;      ///< More text could have changed the result.
};

/// Scans as xScanV does.
int ScanText(char16_t const* text, char16_t const* format, va_list arguments, ScanEnd& end);

} // namespace detail
