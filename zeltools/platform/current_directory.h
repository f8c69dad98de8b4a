// SPDX-License-Identifier: MIT
// The process's current folder.
//
// Threads: any, but it is one for the whole process: whoever changes it holds a lock of the toolkit's own.

#pragma once

#include <string>

namespace platform {

/// Gives the current folder as a rooted path without trailing backslash, `\` at the root. False with the last error
/// when the folder has been removed.
bool GetCurrentDirectoryW(std::u16string& directory);

/// Makes a folder the current one. ErrorFileNotFound, ErrorPathNotFound, ErrorDirectory for a file.
bool SetCurrentDirectoryW(char16_t const* directory);

} // namespace platform
