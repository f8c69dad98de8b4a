// SPDX-License-Identifier: MIT
// Loading one plug-in: a shared library that exports
//
//     extern "C" unsigned int QuenbyGetPluginVersion();                 // PluginRelease
//     extern "C" bool InitBitmapParser(IoPluginMode mode, void* data);  // an entry point for each kind of parser
//
// A library is refused before it runs when it is none, is cut short, or could have been changed by another user; and
// after its version function was asked when it is of another release. A library that was refused once is not touched
// again in this process. Why stands in plugin_report.h.
//
// Each successful LoadPlugin is a lock on the library; FreePlugin gives one up. The end of the process unloads nothing.
//
// Threads: the one that starts the host, before workers use parsers; the tables have no lock of their own.

#pragma once

#include "zeltools/files/file_ext.h"
#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// The release that a plug-in must be of, exactly: 5.0, the major number in the high half.
inline constexpr unsigned int PluginRelease = 0x50000;

/// A loaded library.
using HINSTANCE = void*;

/// What LoadPlugin gives.
struct PluginInfo {
    HINSTANCE handle = nullptr;
    IoPluginCallback address = nullptr;
};

/// The argument of IoPluginRelease.
struct IoPluginReleaseInfo {
    HINSTANCE handle = nullptr;
};

/// Loads a plug-in and locks it.
///
/// @param path       The library file.
/// @param entryName  The entry point that it must export.
/// @param info       Receives the library and the entry point; all null after a failure.
/// @return false when the plug-in is refused, now or before.
ZEL_API bool LoadPlugin(CXTString<char16_t> const& path, char const* entryName, PluginInfo& info);

/// Gives up one lock of a library under an entry name; what is not locked is ignored.
/// @param markBad  Refuses the plug-in under this entry name from now on.
ZEL_API void FreePlugin(HINSTANCE handle, char const* entryName, bool markBad);

/// Gives up one lock of each library that is locked under an entry name; null stands for the empty name.
ZEL_API void FreePlugins(char const* entryName);

// End of the public section ----------------------------------------------------------------------------------------

namespace detail {

/// Tells each library that is locked once only under this name that it is released, and gives up one lock of each.
void ReleasePlugins(char const* entryName);

} // namespace detail
