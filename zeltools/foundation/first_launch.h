// SPDX-License-Identifier: MIT
// Whether this is the first run of a new build: the moment to set up a user's folders, or to show what is new.
//
//     int major = 5;
//     int minor = 0;
//     if (IsFirstLaunch(nullptr, false, true, &major, &minor))
//         ...                            // major and minor are those of the last run, -1 if there was none

#pragma once

#include "zeltools/foundation/api.h"

class CWinApp;

/// Compares the build of the library with that of the last run, and remembers this one.
///
/// @param application         Where to remember it, in the section "settings" of its profile; may be null.
/// @param resetRegistry       On a first launch deletes the application's key with all its settings.
/// @param usePreferencesFile  Remembers it in GetPreferencesFile() instead.
/// @param major,minor         This version, which is remembered when it is a first launch; receives that of the last
///                            run, or -1. Untouched when it is none. A null `major` leaves the remembered version.
/// @return true when the build is another one; always when there is no place to remember it.
/// Threads: the main thread, before settings are in use.
ZEL_API bool IsFirstLaunch(CWinApp* application, bool resetRegistry, bool usePreferencesFile, int* major, int* minor);

// End of the public section ----------------------------------------------------------------------------------------

namespace detail {

/// When the library was built, as `May 11 2026` and `17:44:45`.
inline constexpr int BuildStampParts = 2;
char16_t const* const* BuildStamp();

} // namespace detail
