// SPDX-License-Identifier: MIT
// The one folder in which the host's plug-ins stand.
//
//     SetPluginsDirectory(u"C:\\Quarry\\", true);     // GetPluginsDirectory() is now "C:\Quarry\Plugins\"
//
// Threads: the one that starts the host, before workers use parsers.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Says where the plug-ins are.
///
/// @param directory          Its directory part counts, so a folder ends in a backslash. A relative one starts from the
///                           application's folder. Empty: ignored.
/// @param addPluginsFolder   Appends "Plugins\" to a directory that does not contain it anywhere.
ZEL_API void SetPluginsDirectory(CXTString<char16_t> const& directory, bool addPluginsFolder);

/// The directory that was set, or else "Plugins\" in the application's folder. Ends in a backslash.
ZEL_API CXTString<char16_t> GetPluginsDirectory();
