// SPDX-License-Identifier: MIT
// What kind of file a name stands for, in words for people.
//
//     ShellGetType(u"\\home\\ana\\wood.jpg");    // "JPEG image"
//     ShellGetType(u"C:\\a.nosuch");             // "NOSUCH"

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// The desktop's description of a file's type, in the language of the user's environment.
///
/// It goes by the name, an address's without its query, and asks the disk only whether the name is a directory, so the
/// file need not exist. A text that ends in a backslash is a directory without asking.
///
/// @return never empty: where the system has no description for the type, the extension in capitals without its dot,
///         or else "File" or "Folder".
/// Errors:  none.
/// Threads: any.
ZEL_API CXTString<char16_t> ShellGetType(CXTString<char16_t> const& path);
