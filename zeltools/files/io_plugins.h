// SPDX-License-Identifier: MIT
// Taking the parsers of a folder of plug-ins into the file type registry.
//
//     RegisterIOPlugins(FileKindBitmap, u"");      // every "*.so" of GetPluginsDirectory()
//     ...
//     FreeIOPlugins(FileKindBitmap);
//
// FileKindBitmap asks the entry point "InitBitmapParser", FileKind3D "Init3DParser"; other kinds do nothing.
//
// Threads: the one that starts the host, before workers use parsers.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Adds a class to those that RegisterIOPlugins accepts. As long as none was added, all are accepted.
/// @return the number of classes added.
ZEL_API int FilterPlugins(unsigned int classId);

/// Loads the plug-ins of a folder, in the order of their names, and registers their file types of one kind. The order
/// of registration is the order of the parsers of an extension, apart from FilePropertyFirstParser. A plug-in that
/// registers nothing is released, unloaded and refused from then on; plugin_report.h tells why.
///
/// @param path  A folder, ending in a backslash, of which all files are tried; a search text with a `*`; or, empty, the
///              libraries in GetPluginsDirectory(). Folders inside it are left alone, and one that does not exist has
///              no plug-ins.
ZEL_API void RegisterIOPlugins(unsigned int kind, CXTString<char16_t> const& path);

/// Gives up one lock of each plug-in of a kind; one that is locked no further is told so first (IoPluginRelease). Its
/// types stay registered: a host that goes on calls fileUnregisterFile.
ZEL_API void FreeIOPlugins(unsigned int kind);
