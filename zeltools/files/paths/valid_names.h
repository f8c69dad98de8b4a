// SPDX-License-Identifier: MIT
// Names that a person has typed. These are the path functions that show messages, in a box that the active window owns;
// without a desktop they go to standard error, and the answer is the safest one.
//
// Threads: any that may show a message box.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// What fileIsValidFileName checks and accepts.
enum FileNameCheck : unsigned int {
    FileNameCheckName = 1,      ///< The last component holds none of `* ? " < > | : / \`.
    FileNameCheckPath = 2,      ///< The path holds none of `* ? " < > |`, is absolute, and its directory exists.
    FileNameAcceptRelative = 4, ///< A relative path is good, and its directory is not looked for.
    FileNameAcceptEmpty = 8,    ///< The empty name is good.
    FileNameCheckWhole = 16,    ///< As FileNameCheckName, of the whole text.
    FileNameSilent = 32         ///< Shows no message.
};

/// Whether a name can be used; a message says why not.
///
/// @param flags  FileNameCheck values.
ZEL_API bool fileIsValidFileName(CXTString<char16_t> const& name, unsigned int flags);

/// Asks whether an existing file may be replaced. True on Yes.
ZEL_API bool fileAskForReplace(CXTString<char16_t> const& path);
