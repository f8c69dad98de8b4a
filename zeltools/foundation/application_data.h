// SPDX-License-Identifier: MIT
// The folders of the product: one for all users of the machine, one for this user. They are made when they are first
// asked for, and are remembered from then on.
//
//     GetUserApplicationDataPath(false, nullptr)      "\home\ana\.local\share\Quenby\Catalogue 3\"
//     GetUserApplicationDataPath(true, nullptr)       "\home\ana\.local\share\Quenby\Catalogue\"
//     GetUserApplicationDataPath(true, u"Cache")      "\home\ana\.local\share\Quenby\Cache\"
//
// Threads: any; guarded by the application lock.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// The product's folder for all users, ending in a backslash. Where this user may not write into it, it is the folder
/// of GetUserApplicationDataPath in its place, with a version unless `folderName` is given, and not called after that.
///
/// @param withoutVersion  Leaves the version number out of the folder's name.
/// @param folderName      Takes the place of the product's name, version included; null for none.
ZEL_API CXTString<char16_t> GetCommonApplicationDataPath(bool withoutVersion, char16_t const* folderName);

/// The product's folder for this user, ending in a backslash. It may be missing if it could not be made.
///
/// @param withoutVersion  Leaves the version number out of the folder's name.
/// @param folderName      Takes the place of the product's name, version included; null for none.
ZEL_API CXTString<char16_t> GetUserApplicationDataPath(bool withoutVersion, char16_t const* folderName);

/// Brings a file over from one of the three product versions before this one, the latest that has it. The other
/// version's path is this one's with each occurrence of the version number replaced, wherever it stands in the path.
/// That the file is missing is written to the log.
///
/// @param path  The file that is wanted.
/// @return true when another version has the file, even if the copy fails; false when `path` is there already, does
///         not hold the version number, or no version has it.
ZEL_API bool CopyFileFromPreviousVersionIfMissing(CXTString<char16_t> const& path);

// End of the public section ----------------------------------------------------------------------------------------

namespace detail {

/// Forgets the two folders whose names hold the version.
void ForgetVersionedDataPaths();

} // namespace detail
