// SPDX-License-Identifier: MIT
// Names of limited length, and numbers at the end of names.
//
// | path         | parenthesis | fileNextNumberedName |
// |--------------|-------------|----------------------|
// | `a.txt`      | yes         | `a(1).txt`           |
// | `ab.txt`     | yes         | `ab (1).txt`         |
// | `ab (1).txt` | yes         | `ab (2).txt`         |
// | `ab9.txt`    | no          | `ab10.txt`           |
//
// Paths are taken in their canonical form, so a relative one with a directory becomes absolute.
// Threads: any; a name that does not exist may exist a moment later.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Cuts the name so that name and extension have `maxName` characters, but never the name below 8 characters nor the
/// extension. The directory does not count.
///
/// @param maxName  0 or less: no limit, and `path` comes back as it is.
ZEL_API CXTString<char16_t> fileCutName(CXTString<char16_t> const& path, int maxName);

/// Cuts a number off the end of a bare name: `img12` gives `img` and 12, `img (12)` gives `img ` and 12.
///
/// @param number  Receives the number; -1 when there is none, as behind an extension (`img12.tif` keeps its digits).
/// The first character stays: `123` gives `1` and 123. With a directory in front the number is found and nothing is
/// cut.
ZEL_API CXTString<char16_t> fileRemoveNameDigitEnding(CXTString<char16_t> const& path, int& number);

/// The path with the number of its name raised by one, from 1 on; the disk is not asked.
///
/// @param parenthesis  The number stands in parentheses, behind a blank where the name has two characters or more.
/// @param maxName      Characters that name and number may have; the name is cut for the number. Below 1: no limit.
ZEL_API CXTString<char16_t> fileNextNumberedName(CXTString<char16_t> const& path, bool parenthesis, int maxName);

/// A name that does not exist: the path itself, or its next free number.
///
/// @param maxName      Applies fileCutName first, and counts for the numbered name as in fileNextNumberedName.
/// @param forceNumber  Numbers the name even where the path itself is free.
ZEL_API CXTString<char16_t> fileCreateUniqueName(CXTString<char16_t> const& path, bool parenthesis, int maxName,
                                                 bool forceNumber);
