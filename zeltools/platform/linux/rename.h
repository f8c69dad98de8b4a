// SPDX-License-Identifier: MIT
// Renaming that never replaces anything, on every file system.

#pragma once

#include <string>

namespace platform {

/// Gives a file or folder another name on the same file system if nothing has that name. False with errno: EEXIST when
/// something has it, EXDEV across file systems.
bool RenameWithoutReplacing(std::string const& from, std::string const& to, bool isDirectory);

/// Asks the disk to keep the names of the folder that holds a path. As good as the file system can; never fails.
void FlushFolderOf(std::string const& path);

/// Gives the folder of a path with its trailing slash; empty for a bare name.
std::string FolderOf(std::string const& path);

} // namespace platform
