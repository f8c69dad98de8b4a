// SPDX-License-Identifier: MIT
// Where a shortcut leads: files in the Shell Link binary format (MS-SHLLINK, `.lnk`), and symbolic links.
//
// Threads: any.

#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace platform {

/// What a shell link says about its target, each empty where it says nothing.
struct ShellLink {
    std::u16string localPath;        ///< LinkInfo: local base path and common suffix.
    std::u16string networkPath;      ///< LinkInfo: share of the network relative link and common suffix.
    std::u16string environmentPath;  ///< EnvironmentVariableDataBlock, not yet expanded.
    std::u16string relativePath;     ///< RELATIVE_PATH, from the link's own folder.
    std::u16string workingDirectory; ///< WORKING_DIR.
};

/// Reads a shell link. False when the bytes are none, or cut off or inconsistent in what is read; then `link` is
/// untouched. Every size is checked against the bytes that are there before it is used.
bool ParseShellLink(std::span<std::byte const> bytes, ShellLink& link);

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
