// SPDX-License-Identifier: MIT
// Where data belongs on this system.
//
// Threads: any, as long as nobody changes the environment meanwhile.

#pragma once

#include <string>

namespace platform {

enum class KnownFolder {
    ProgramData,   ///< Of all users: ZELTOOLS_COMMON_DATA, else /var/lib.
    LocalAppData,  ///< Of this user: XDG_DATA_HOME, else ~/.local/share.
    Configuration, ///< Settings of this user: XDG_CONFIG_HOME, else ~/.config.
};

/// Gives a folder as a rooted path without trailing backslash; it need not exist. A variable that is empty or relative
/// counts as absent. Without HOME the user's entry in the password table is asked; without any, the text is empty.
std::u16string SHGetKnownFolderPath(KnownFolder folder);

/// The same as a native path; empty where there is none.
std::string GetNativeKnownFolder(KnownFolder folder);

/// Gives the folder for temporary files, with a trailing backslash: TMPDIR where it is an absolute path, else /tmp. It
/// need not exist.
std::u16string GetTempPathW();

} // namespace platform
