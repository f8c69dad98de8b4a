// SPDX-License-Identifier: MIT
// Where the product keeps its preferences, and whether they may be saved.
//
//     GetUserPreferencesPath(true)     "\home\ana\.local\share\Quenby\Catalogue 3\Preferences\"
//     GetPreferencesFile()             "\home\ana\.local\share\Quenby\Catalogue 3\Preferences\Catalogue.prefs"
//
// Threads: any; guarded by the application lock.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Set the folders, in place of those below the product's; a missing backslash is added. Empty goes back to those.
ZEL_API void SetCommonPreferencesPath(CXTString<char16_t> const& path);
ZEL_API void SetUserPreferencesPath(CXTString<char16_t> const& path);

/// The preferences folder of all users or of this user, ending in a backslash.
///
/// @param create  Makes the folder. Only the first question looks at it: a path that is known is given as it is.
ZEL_API CXTString<char16_t> GetCommonPreferencesPath(bool create);
ZEL_API CXTString<char16_t> GetUserPreferencesPath(bool create);

/// This user's preferences file of the product; its folder is made, the file is not.
ZEL_API CXTString<char16_t> GetPreferencesFile();

/// Switches the saving of preferences on, as it is at first, or off, for the whole process.
ZEL_API void EnablePreferencesSaving(bool enable);
ZEL_API bool IsPreferencesSavingEnabled();

// End of the public section ----------------------------------------------------------------------------------------

namespace detail {

/// Forgets the two folders and the file.
void ForgetPreferencesPaths();

} // namespace detail
