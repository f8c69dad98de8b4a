// SPDX-License-Identifier: MIT
// Paths shortened with `...`, to be shown to a person.
//
// Threads: any for the first; the second belongs to the thread of its window.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

class CWnd;

/// Shortens a path that has more than `maxChars` characters to its root, `...` and its end:
/// `C:\a\long\way\name.txt` with 14 gives `C:\...ay\name.txt`.
///
/// @param maxChars  Characters of `...` and end together, at least 10. The root comes on top of them, so the result
///                  can be longer.
ZEL_API CXTString<char16_t> fileCompactPath(CXTString<char16_t> const& path, int maxChars);

/// Shortens a path until the window's font shows it in a width.
///
/// @param window  Null: fileCompactPath(path, 15).
/// @param width   In pixels; 0 takes the window's client width less 10.
/// @return the path as it was where it cannot be measured, where not even `...` fits, or from 260 characters on.
ZEL_API CXTString<char16_t> fileCompactPath(CXTString<char16_t> const& path, CWnd* window, int width);
