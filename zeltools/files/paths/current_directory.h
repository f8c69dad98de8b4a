// SPDX-License-Identifier: MIT
// The process's current directory with its stack, and the directories that a host remembers for its own purposes.
//
//     if (filePushCurrentDirectory(u"\\home\\ana\\scenes\\", nullptr)) { ... relative names ... }
//     filePopCurrentDirectory();      // after a failed push too

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/hash_map.h"
#include "zeltools/foundation/xstring.h"

/// Gives the current directory, slash-terminated. Where the system cannot say it, or says it in 260 characters or more,
/// the directory of the toolkit's own module.
/// Threads: any.
ZEL_API CXTString<char16_t> fileGetCurrentDirectory();

/// Remembers the current directory and changes to another.
///
/// @param timeOut  Guards the change, as io_time_out.h says; may be null.
/// @return false when the change failed. The directory is remembered in any case, so each push needs its pop.
/// Threads: any, but the current directory is one for the whole process.
ZEL_API bool filePushCurrentDirectory(CXTString<char16_t> const& directory, unsigned int* timeOut);

/// Goes back to the directory that the last push remembered.
/// @return false without a push, and when the directory is gone; it is forgotten then all the same.
/// Threads: as filePushCurrentDirectory.
ZEL_API bool filePopCurrentDirectory();

/// A host's name for one of its directories: last opened scene, last texture, ... The toolkit itself uses none.
using DirectoryType = unsigned int;

/// Remembers a directory for each purpose of the host. The texts are stored as they are; the disk is never asked.
/// Threads: one at a time.
class ZEL_API CCurrentDir {
public:
    CCurrentDir() = default;
    virtual ~CCurrentDir();

    /// Remembers a directory and gives the one before; empty for none.
    CXTString<char16_t> SetDirectory(CXTString<char16_t> const& directory, DirectoryType type);

    /// Gives the remembered directory; empty for none. The first argument means nothing.
    CXTString<char16_t> GetDirectory(CXTString<char16_t> const& ignored, DirectoryType type) const;

private:
    CHashMap<DirectoryType, DirectoryType, CXTString<char16_t>> directories;
};

/// The one that hosts share.
extern ZEL_API CCurrentDir gCurrentDir;
