// SPDX-License-Identifier: MIT
// A file's size for people.
//
//     GetFileSizeString(999);           // "999 bytes"
//     GetFileSizeString(1536);          // "1.50 KB"
//     GetFileSizeString(3221225472);    // "3.00 GB"

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Writes a count of bytes in the largest unit of 1024 that it fills, with two decimals, in the calling thread's
/// language: bytes, KB, MB, GB, TB, PB, EB. Decimals are cut, so that a size never shows as a unit that it does not
/// fill.
/// Threads: any; as with printf, not while another thread calls setlocale.
ZEL_API CXTString<char16_t> GetFileSizeString(unsigned long long size);
