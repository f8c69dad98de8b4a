// SPDX-License-Identifier: MIT
// What may be done with a file, and what kind of file it is.
//
// Errors:  none throws.
// Threads: any.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

/// Bits of fileCheckAccess.
enum FileAccess : unsigned int {
    FileAccessRead = 0x1,
    FileAccessWrite = 0x2,
    FileAccessShareRead = 0x4,  ///< Others may have it open for reading.
    FileAccessShareWrite = 0x8, ///< Others may have it open for writing.
    FileAccessCreate = 0x10, ///< Asks whether the file could be created; one that exists, whether it can be rewritten.
};

/// Answers whether a file can be opened as asked, by opening it and closing it at once. The answer holds for that
/// moment: who opens next may have been overtaken.
///
/// With FileAccessCreate a file that exists is tested for reading and writing; one that does not is created and
/// deleted again.
///
/// @param flags  FileAccess bits. Without read and write: whether there is such a file at all.
/// @return false for a folder too.
ZEL_API bool fileCheckAccess(CXTString<char16_t> const& path, unsigned int flags);

/// Answers whether a file is a program, by its content: of this system or of the original one, or a script. A program
/// of this system must have somebody's permission to execute it.
ZEL_API bool fileIsExecutable(CXTString<char16_t> const& path);

/// Answers whether a path is a shortcut: a link file of the shell, or a symbolic link.
///
/// @param target  Receives where it leads, or `path` itself when it is none; may be null.
ZEL_API bool fileIsShortcut(CXTString<char16_t> const& path, CXTString<char16_t>* target);
