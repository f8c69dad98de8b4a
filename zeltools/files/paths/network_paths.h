// SPDX-License-Identifier: MIT
// Drives and mounts that lead to other machines, and the names under which other machines know this one's files.
//
// Threads: any.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

class CWnd;
using HWND = CWnd*;

/// Gives the server form of a path.
///
/// A path on a network drive, or on the mount point of a network file system, becomes `\\server\share\...` by the
/// mount. A path on this machine's own disks becomes that of the share that holds it, the deepest of them:
/// `\srv\media\a.png` becomes `\\HOST\media\a.png` where this machine shares `\srv\media` as `media`.
///
/// @param out  Receives the server form; `path` itself where there is none.
/// @return true when `out` is a server path.
ZEL_API bool fileConvertToUNCPath(CXTString<char16_t> const& path, CXTString<char16_t>& out);

/// What fileIsOnMappedDrive answers.
enum MappedDriveInfo : int {
    MappedDriveNone = 0,        ///< No drive letter, or a drive of this machine's own.
    MappedDriveConnected = 1,   ///< A network drive that can be used.
    MappedDriveUnavailable = 2, ///< A network drive whose share is not mounted.
};

/// Answers whether a path lies on a network drive, and whether the drive can be used.
///
/// @param reconnect  Tries to mount the share of a drive that is not connected. This can take half a minute.
/// @param silent     The attempt never asks for a name or password.
/// @param owner      The window that questions belong to; may be null.
ZEL_API MappedDriveInfo fileIsOnMappedDrive(CXTString<char16_t> const& path, bool reconnect, bool silent, HWND owner);
