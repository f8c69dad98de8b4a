// SPDX-License-Identifier: MIT
// Small questions to the disk about one name.
//
//     unsigned int timeOut = 500;
//     if (!fileExists(path, &timeOut) && timeOut == IoTimedOut) ... the server did not answer ...
//
// A `timeOut` word guards the question as io_time_out.h says; null asks without a limit. When the limit runs out the
// word becomes IoTimedOut and the answer is the one for "not there". Symbolic links are followed.
//
// Errors:  none throws; why a question failed stays in the thread's last error.
// Threads: any; each touches only its arguments.

#pragma once

#include "zeltools/files/paths/file_find_info.h"
#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Answers whether a file or folder of this name can be reached.
ZEL_API bool fileExists(CXTString<char16_t> const& path, unsigned int* timeOut = nullptr);

/// Answers whether the name is a folder's, with or without a trailing backslash.
ZEL_API bool fileDirectoryExists(CXTString<char16_t> const& path, unsigned int* timeOut = nullptr);

/// Answers whether a path means a folder.
///
/// @param checkDisk  Asks the disk. Otherwise only the text counts: a trailing backslash means a folder.
/// @return false for the empty path.
ZEL_API bool fileIsDirectory(CXTString<char16_t> const& path, bool checkDisk, unsigned int* timeOut = nullptr);

/// Answers whether a folder has an entry that matches a pattern, and which comes first.
///
/// @param directory  Ends in a backslash: the pattern is put behind it as it is.
/// @param pattern    `*.png`, `wood?.*`, or a plain name. Wildcards ignore case.
/// @param found      Receives the entry; may be null. Untouched when nothing matches.
ZEL_API bool filePathContainMatchingFile(CXTString<char16_t> const& directory, CXTString<char16_t> const& pattern,
                                         xFileFindInfo* found, unsigned int* timeOut = nullptr);

/// Gives the size of a file in bytes: 0 for a folder, all ones when it cannot be read.
ZEL_API unsigned long long fileGetSize(CXTString<char16_t> const& path);
