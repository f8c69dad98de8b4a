// SPDX-License-Identifier: MIT
// The shares that a Samba server on this machine offers, read from its own files.

#pragma once

#include "zeltools/platform/network_drives.h"

#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// What smb.conf says.
struct SambaConfiguration {
    std::vector<ShareInfo> shares; ///< Disk shares; without printers, `homes` and paths with substitutions.
    std::string userShareFolder;   ///< Native; empty where it is not stated.
};

/// Reads the text of an smb.conf: sections in brackets, `key = value`, comments with # or ;, lines that go on after a
/// backslash. Keys ignore case and blanks.
SambaConfiguration ParseSambaConfiguration(std::string_view text);

/// Reads one user's share, a file of `key=value` lines. An empty path means that it is none.
ShareInfo ParseUserShare(std::string_view name, std::string_view text);

/// Where the files are; tests point them at files of their own.
struct SambaPaths {
    std::string configuration = "/etc/samba/smb.conf";
    std::string userShareFolder = "/var/lib/samba/usershares"; ///< Where the configuration states none.
};
SambaPaths& GetSambaPaths();

} // namespace platform
