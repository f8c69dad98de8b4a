// SPDX-License-Identifier: MIT
// Translates between the toolkit's path strings and the system's names. Every call of this folder that takes a path
// goes through here, and nothing else in the toolkit needs to.
//
//     ToNativePath(u"\\home\\ana\\a.png", native)     native == "/home/ana/a.png"
//     ToNativePath(u"C:\\Textures\\wood.jpg", native) native == "/mnt/c/Textures/Wood.JPG", by the drive table
//     FromNativePath("/home/ana/10:30?.png")          u"\\home\\ana\\10\uF03A30\uF03F.png"
//
// Names are a bijection: whatever bytes a native name has, its toolkit form leads back to exactly them, and two
// different forms never mean the same name.
//
//   native                                              toolkit
//   UTF-8 character                                     the same character in UTF-16
//   one of  \ : * ? " < > |                             U+F000 plus its code
//   byte that is not part of valid UTF-8                lone surrogate U+DC00 plus the byte (DC80 to DCFF)
//   each byte of a character in U+F000 to U+F0FF        the same (DCEE to DCEF, DC80 to DCBF)
//
// Paths come in four shapes:
//
//   \home\ana\a.png      rooted: names are exact
//   images\a.png         relative to the process's current folder: names are exact
//   C:\Textures\a.png    below the folder of the drive; C:a and C:\a are the same file. Also as \\?\C:\...
//   \\server\share\a     below the mount point of the share. Also as \\?\UNC\server\share\a
//
// A drive or server path finds its file without regard to case where the exact name is missing, component by
// component; among names that differ by case only, the first in byte order is taken. What is missing altogether keeps
// its spelling, so that a new file can be created. `.` and `..` are resolved in the text of such a path and never
// lead above the drive or share. `/` is taken for a backslash everywhere.
//
// Threads: any. A drive or server path asks the disk and can block as any file call can.

#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Translates a path.
///
/// @param native  Receives the native path. Holds anything after a failure.
/// @return false with the last error set: ErrorPathNotFound for an empty path and for a drive that is not in the
///         table; ErrorBadNetPath for a share that is not mounted; ErrorInvalidName for a character that no file name
///         has in the toolkit's form (`*`, an embedded zero, a surrogate that stands for no byte, ...);
///         ErrorOperationAborted when the search was interrupted.
[[nodiscard]] bool ToNativePath(std::u16string_view path, std::string& native);

/// Gives the toolkit's form of a native path, absolute or relative. Leading slashes become one backslash, since two
/// would mean a server. Cannot fail; an embedded zero ends the path, as it does for the system.
[[nodiscard]] std::u16string FromNativePath(std::string_view native);

/// Translates one name or relative path without looking at its shape; a slash and a backslash become a slash.
/// False for a character that no file name has in the toolkit's form; the last error is not set.
[[nodiscard]] bool ToNativeName(std::u16string_view name, std::string& native);

/// Appends the toolkit's form of a native name or relative path. A slash becomes a backslash.
void AppendFromNativeName(std::string_view native, std::u16string& name);

} // namespace platform
