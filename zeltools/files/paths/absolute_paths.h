// SPDX-License-Identifier: MIT
// From relative to absolute paths and back.
//
//     fileMakeAbsolutePath(u"C:\\a\\b", u"..\\c.txt", false)                            // C:\a\c.txt
//     fileMakeRelativePath(u"C:\\a\\b\\", u"C:\\a\\c.txt", true, FileNameTypeFile)      // ..\c.txt
//
// Threads: any.

#pragma once

#include "zeltools/files/paths/file_name_type.h"
#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Says how `path` is reached from the directory `base`.
///
/// @param base            Slash-terminated; any other gives `path` back.
/// @param path            Absolute; a relative one comes back as it is.
/// @param removeDotSlash  Cuts a leading `.\`, as FileNameTypeFile does too.
/// @param type            With the bit of FileNameTypeDirectory `path` is a directory.
/// @return the relative path; `path` itself where both share nothing but a lone backslash, where the drives or servers
///         differ, or where the result has 260 characters or more.
ZEL_API CXTString<char16_t> fileMakeRelativePath(CXTString<char16_t> const& base, CXTString<char16_t> const& path,
                                                 bool removeDotSlash, FILENAME_TYPE type);

/// Joins a relative path to a base and makes the result canonical; an absolute path comes back as it is.
///
/// @param terminate  Ends the result with a backslash. A joined path that is a directory on the disk gets it anyway,
///                   and only a result without it asks the disk.
/// @return empty for two empty texts, or `\` with `terminate`.
ZEL_API CXTString<char16_t> fileMakeAbsolutePath(CXTString<char16_t> const& base, CXTString<char16_t> const& path,
                                                 bool terminate);

/// Takes `.` and `..` out of a path, in place. True when it succeeded, which any text does.
///
/// `C:\a\.\..\b` becomes `C:\b`, `a\..\b` becomes `\b`, a text of which nothing is left `\`.
ZEL_API bool fileMakePathShortest(CXTString<char16_t>& path);
