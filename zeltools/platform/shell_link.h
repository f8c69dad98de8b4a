// SPDX-License-Identifier: MIT
// The content of `.lnk` files, by their published format: [MS-SHLLINK] "Shell Link (.LNK) Binary File Format".
//
// Threads: any.

#pragma once

#include <cstddef>
#include <span>
#include <string>

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

} // namespace platform
