// SPDX-License-Identifier: MIT
// Drive letters and the kind of medium behind a path.
//
// Drives are stated in the environment: ZELTOOLS_DRIVES="C=/mnt/c;P=/projects;S=//server/share". A letter leads to a
// native folder or to a share; a share is found through the mount table when the drive is used. Entries that
// are no letter, or lead to no absolute folder, are left out; the last entry of a letter counts.
//
// Without the variable they are the texts of the registry key HKEY_CURRENT_USER\Software\ZelTools\Drives: the value's
// name is the letter, its text the folder (/mnt/c or \mnt\c) or the share. A change there is seen at once.
//
// Threads: any, as long as nobody changes the environment meanwhile.

#pragma once

#include <string>
#include <string_view>

namespace platform {

enum DriveType : unsigned int {
    DriveUnknown = 0,
    DriveNoRootDir = 1, ///< The drive is not in the table, or its share is not mounted.
    DriveRemovable = 2,
    DriveFixed = 3,
    DriveRemote = 4, ///< A network file system, or a share of the user's virtual file systems.
    DriveCDRom = 5,
    DriveRamDisk = 6,
};

/// Gives the kind of medium that a path lies on, by the mount table alone: a dead mount is not touched.
///
/// @param path  A drive (`C:`, `C:\`), a share, or any rooted path, which stands for the mount that it lies on. Null:
///              the current folder.
DriveType GetDriveTypeW(char16_t const* path);

/// Answers whether a drive letter leads to a network file system, mounted or not.
bool IsNetworkDrive(char16_t letter);

/// Gives where a drive leads: a native folder without trailing slash ("" for the root itself), or a share as
/// `//server/share`. False when the drive is not in the table.
bool GetDriveTarget(char16_t letter, std::string& target);

/// Gives the letters of the table, in alphabetical order, upper case.
std::u16string GetDriveLetters();

} // namespace platform
