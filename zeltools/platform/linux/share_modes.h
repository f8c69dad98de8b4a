// SPDX-License-Identifier: MIT
// Share modes of open files, kept by open-file-description locks.
//
// For each right (read, write, delete) an open file may use it, and may deny it to others. Users of a right get along
// with users, deniers with deniers, but a user and a denier exclude each other. Each of these six groups owns bytes far
// behind any content, where its members hold a lock for as long as they are open:
//
//   2^62 + 0 .. 5       one byte a group, locked together by members that can read the file (a shared lock
//                       needs a readable descriptor)
//   2^62 + 16 + 256 g   256 bytes of group g: a member that can only write locks any one of them for itself
//
// Who opens a file first joins its groups, and then looks whether the opposite ones are empty. Two that come at once
// may both see the other and both withdraw, so they try again after a moment; never do both get in.
//
// The order of the groups lets the usual combinations (a reader that denies writing) lock one run of bytes.

#pragma once

#include "zeltools/platform/files.h"

#include <string>

namespace platform {

/// Takes the share modes of an open file; they last until its descriptor and the duplicates of it are closed.
///
/// @param uses    Rights that the file is open for: ShareRead, ShareWrite, ShareDelete.
/// @param shares  Rights that others may use.
/// @return false when another open file stands against it. True also where the file system has no such locks.
bool TakeShareModes(int descriptor, unsigned int uses, unsigned int shares);

/// Answers whether an open file denies rights that somebody is about to use by the file's name. False as well when that
/// cannot be found out, since the file cannot be read.
bool IsUseDenied(std::string const& nativePath, unsigned int uses);

/// The same for a name in an open folder.
bool IsUseDenied(int folder, char const* name, unsigned int uses);

} // namespace platform
