// SPDX-License-Identifier: MIT
// Where a shortcut leads: a shell link (`.lnk`) or a symbolic link.
//
// Threads: any.

#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Answers whether `path` is a shortcut, and where it leads.
///
/// The first of these that the file states is the target: network path, local path, environment path (expanded),
/// relative path (from the link's folder). A symbolic link gives its target as stored, made absolute from the link's
/// folder; whether the target exists is not asked.
///
/// @param target  Receives the target, with backslashes; untouched when the result is false.
/// @return false when the file cannot be read, is neither, or names no target.
bool ReadShortcut(std::u16string_view path, std::u16string& target);

} // namespace platform
