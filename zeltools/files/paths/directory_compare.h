// SPDX-License-Identifier: MIT
// Whether two texts name the same file or directory, or one directory lies in the other. Only the texts are compared,
// without regard to case; links and mounts are not followed.
//
// Threads: any.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Result of fileCompareDirectory.
enum DirCompare {
    DirDifferent = 0,
    DirSame = 1,
    DirFirstInSecond = 2,
    DirSecondInFirst = 3
};

/// Whether both have the same canonical complete name; two empty texts are the same.
ZEL_API bool fileIsSameFile(CXTString<char16_t> const& a, CXTString<char16_t> const& b);

/// Whether both have the same directory part, in its canonical form.
ZEL_API bool fileIsSameDir(CXTString<char16_t> const& a, CXTString<char16_t> const& b);

/// Compares two directories, a missing trailing backslash added. A relative one differs from all but itself.
///
/// @return DirFirstInSecond where the text of `b` occurs anywhere in that of `a`, DirSecondInFirst the other way round.
///         This is looser than a comparison of the beginnings: `\b\` occurs in `\a\b\c\`.
ZEL_API DirCompare fileCompareDirectory(CXTString<char16_t> a, CXTString<char16_t> b);
