// SPDX-License-Identifier: MIT
// Slashes of path texts: one kind, one at a time, one at the end or none; and characters that no name may hold.
//
// Threads: any.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Makes every `/` a `\`. True when there was one.
ZEL_API bool fileConvertSlash(CXTString<char16_t>& path);

/// Makes every run of backslashes one, but for the pair that a UNC path begins with.
ZEL_API void fileRemoveDuplicatedSlash(CXTString<char16_t>& path);

/// Appends a backslash unless there is one at the end; the empty text becomes `\`.
ZEL_API void fileSlashTerminate(CXTString<char16_t>& path);

/// Whether the text ends in a backslash; not so the empty text.
ZEL_API bool fileIsSlashTerminated(CXTString<char16_t> const& path);

/// Takes one backslash off the end.
ZEL_API void fileRemoveSlashTermination(CXTString<char16_t>& path);

/// Makes a text fit for a name: deletes each of `< > : " / \ | ? * .`, the dot too.
///
/// @param replacement  Replaces each blank; a blank leaves them.
ZEL_API void fileRemoveInvalidChar(CXTString<char16_t>& name, char16_t replacement);
