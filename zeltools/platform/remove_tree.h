// SPDX-License-Identifier: MIT
// Removes a folder with everything below it.
//
// Threads: any; several removals of one tree at once get in each other's way and nothing worse.

#pragma once

#include <functional>
#include <string_view>

namespace platform {

/// Removes a folder and its content.
///
/// Every folder below is opened from its parent's handle and without following a link, so that nothing outside the tree
/// is reached, also when somebody puts a link in a folder's place meanwhile. Symbolic links are removed
/// themselves; where `path` is one, it alone. A file system that is mounted in the tree keeps its mount point.
///
/// @param keep  Answers for the name of each file (not of a folder or link) whether it is spared.
/// @return true when nothing is left. Otherwise the last error is the first one that was met:
///         ErrorDirectoryNotEmpty where a file was spared, ErrorSharingViolation where a file object has a file open
///         without ShareDelete; and the rest of the tree has been removed.
bool RemoveTree(char16_t const* path, std::function<bool(std::u16string_view name)> const& keep);

} // namespace platform
