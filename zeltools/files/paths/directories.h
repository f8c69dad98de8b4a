// SPDX-License-Identifier: MIT
// Making, removing and counting folders.
//
// Threads: any.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xarray.h"
#include "zeltools/foundation/xstring.h"

/// Makes a folder.
///
/// @param path       With or without a trailing backslash.
/// @param recursive  Makes the missing folders above it as well. When one cannot be made, those that this call made are
///                   removed again.
/// @return true also when the folder is there already; false for the empty path.
ZEL_API bool fileCreateDirectory(CXTString<char16_t> const& path, bool recursive);

/// Removes a folder.
///
/// Symbolic links below it are removed and never followed, so that nothing outside the tree is touched, whatever
/// anybody changes in it meanwhile. What cannot be removed stays, and the rest is removed all the same.
///
/// @param recursive   Removes its content first. Otherwise the folder must be empty, and the two below mean nothing.
/// @param keepListed  Spares files whose extension is in `keep`; the folders that hold one stay.
/// @param keep        Extensions with their dot; case does not count. May be null.
/// @return true when nothing is left: false when a file was spared, when something could not be removed, and when
///         `path` is no folder.
ZEL_API bool fileRemoveDirectory(CXTString<char16_t> const& path, bool recursive, bool keepListed,
                                 CXArray<CXTString<char16_t>>* keep);

/// Counts the entries of a folder, folders and hidden files too.
///
/// @param directory  Ends in a backslash; otherwise the result is 0.
/// @param recursive  Counts the entries of the folders below as well. A link to a folder is counted and not entered.
/// @return the number, INT_MAX at most. What cannot be read counts nothing.
ZEL_API int fileGetFileCount(CXTString<char16_t> const& directory, bool recursive);
