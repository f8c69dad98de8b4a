// SPDX-License-Identifier: MIT
// Who the host is on the disk: the full path of its program. Plug-ins and the product's name are found from it.
//
//     GetApplicationPath(false);       // "\usr\bin\catalogue"
//     GetApplicationPath(true);        // "\usr\bin\"
//     GetApplicationName(false);       // "catalogue"
//
// All of it works before the start of the library and after its close.
// Threads: any; guarded by the application lock.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Says where the application is, in place of the running program's own path.
///
/// @param path  A file or a folder, with either slash; a relative one starts from the running program's folder. To a
///              folder the running program's file name is added. A path whose folder does not exist is ignored.
ZEL_API void SetApplicationPath(CXTString<char16_t> const& path);

/// The path that was set, or else the running program's.
/// @param directoryOnly  Leaves the file name out; the result ends in a backslash.
ZEL_API CXTString<char16_t> GetApplicationPath(bool directoryOnly);

/// The file name of the application path.
ZEL_API CXTString<char16_t> GetApplicationName(bool removeExtension);

// End of the public section ----------------------------------------------------------------------------------------

namespace detail {

/// Forgets the path; the next question takes the running program's.
void ForgetApplicationPath();

} // namespace detail
