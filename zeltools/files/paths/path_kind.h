// SPDX-License-Identifier: MIT
// What kind of path a text is. The disk is not asked.
//
// Threads: any.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Begins with `\\`, and not with `\\?\` unless `UNC\` follows. `//server` is none.
ZEL_API bool fileIsUNCPath(CXTString<char16_t> const& path);

/// Begins with neither a backslash nor a drive letter. The empty text and addresses are relative.
ZEL_API bool fileIsPathRelative(CXTString<char16_t> const& path);

/// A UNC path, or one on a drive that leads to another machine.
ZEL_API bool fileIsOnNetworkDrive(CXTString<char16_t> const& path);
