// SPDX-License-Identifier: MIT
// The facts of a file as the system gives them, in the toolkit's terms.

#pragma once

#include "zeltools/platform/file_names.h"

namespace platform {

enum class DanglingLink {
    IsMissing, ///< A symbolic link that leads nowhere fails with ENOENT.
    IsAnEntry, ///< It gives the facts of the link itself.
};

/// Reads a file's attributes, relative to an open folder (AT_FDCWD for none): one question, two for a symbolic link.
/// False with errno.
bool ReadFileAttributes(int folder, char const* name, DanglingLink dangling, FileAttributeData& data);

} // namespace platform
