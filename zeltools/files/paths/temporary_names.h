// SPDX-License-Identifier: MIT
// Names for temporary files and folders. They are free when they are given; nothing keeps another program from taking
// them a moment later, so a file is created with CreateNew semantics where that matters.
//
// The temporary folder is TMPDIR, else /tmp; where it is no directory, the folder `tmp` beside the toolkit's library;
// where that cannot be made, the product's data folder of this user.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// A path for a temporary file, not existing yet; no file is created.
///
/// @param name      Its last component is the wish for a name. Where that exists, it is numbered: `a.txt`, `a1.txt`.
/// @param keepName  false: only ASCII letters and dots of the name stay, with `tmp` in front of a leading dot.
/// @param folder    Put in front of the name exactly as it is given, without adding a separator, and the name is kept.
///                  Empty: the temporary folder.
/// @return the path; the folder itself where nothing is left of the name.
/// Threads: any.
ZEL_API CXTString<char16_t> fileCreateTmpName(CXTString<char16_t> const& name, bool keepName,
                                              CXTString<char16_t> const& folder);

/// A path for a temporary folder below the temporary folder, slash-terminated and not existing yet: the name itself, or
/// the name with the first of 1, 2, 3, ... that is free.
///
/// @param name    An absolute one counts by its last component; a relative one stands as it is.
/// @param create  Creates the folder. Whether that worked is seen by asking for it.
/// Threads: any. Creating calls wait for one another, so that no two in one process get the same folder.
ZEL_API CXTString<char16_t> fileCreateTmpFolder(CXTString<char16_t> const& name, bool create);
