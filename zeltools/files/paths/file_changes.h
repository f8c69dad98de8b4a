// SPDX-License-Identifier: MIT
// Deleting, copying and renaming files. What a call could not do it has not done at all.
//
// A file that the toolkit has open is in the way of each call that its share modes forbid.
//
// Errors:  none throws; why a call failed stays in the thread's last error.
// Threads: any.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Deletes a file, or a symbolic link and not what it leads to. False for a folder.
ZEL_API bool fileDelete(CXTString<char16_t> const& path);

/// Copies a file with its permissions and its date of last write. The copy appears under its name when it is complete
/// and on the disk; until then `to` is as it was.
///
/// @param failIfExists  An existing `to` is left alone, also one that appears while the copy is made.
ZEL_API bool fileCopy(CXTString<char16_t> const& from, CXTString<char16_t> const& to, bool failIfExists);

/// Moves a file or folder.
///
/// @param failIfExists  Nothing is replaced, and the move stays on one file system. Otherwise an existing file `to` is
///                      replaced, and a file can go to another file system, as a copy that is complete before
///                      the original is deleted. A folder is never replaced and stays on its file system.
ZEL_API bool fileMove(CXTString<char16_t> const& from, CXTString<char16_t> const& to, bool failIfExists);

/// Gives a file or folder another name, in another folder too. Never replaces anything. A file can go to another file
/// system.
ZEL_API bool fileRename(CXTString<char16_t> const& from, CXTString<char16_t> const& to);
