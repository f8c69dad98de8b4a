// SPDX-License-Identifier: MIT
// Walks the entries of a folder, and of the folders below it, with the facts that the system gives at once.
//
//     CFolderWalk walk(u"\\home\\ana\\textures\\", CFolderWalk::BelowToo);
//     for (CFolderWalk::Entry entry; walk.Next(entry);) { ... walk.GetFolder() + entry.name ... }
//
// Unlike the wildcard search it has no bound on the length of a path, and it says which folder or entry could not be
// read and why, instead of leaving it out.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xarray.h"
#include "zeltools/foundation/xfile_exception.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/foundation/xtime.h"

/// One walk. Entries come folder by folder, each folder's sorted by name; a folder is an entry of its parent first and
/// is entered when its parent is done. Memory grows with the largest folder and with the folders that are still to
/// be entered, not with the number of files. Symbolic links to folders are reported and never entered, so that a
/// cycle of links cannot trap the walk.
///
/// Threads: one thread at a time.
class ZEL_API CFolderWalk {
public:
    enum Depth {
        ThisFolder, ///< Only the folder's own entries.
        BelowToo,   ///< The entries of all folders below it too.
    };

    struct Entry {
        CXTString<char16_t> name; ///< The last component, without a trailing separator; empty for an unreadable folder.
        bool isDirectory = false; ///< A folder, or a link to one.
        bool isLink = false;      ///< A symbolic link; size and date are those of what it points to.
        unsigned long long sizeBytes = 0;
        CXTime lastWrite;
        /// `none` when the facts are good; otherwise why the entry (or, where the name is empty, the
        /// folder GetFolder) could not be read.
        CXFileException::FileExceptionType error = CXFileException::none;
    };

    CFolderWalk(CXTString<char16_t> const& folder, Depth depth);
    ~CFolderWalk();
    CFolderWalk(CFolderWalk const&) = delete;
    CFolderWalk& operator=(CFolderWalk const&) = delete;

    /// Moves to the next entry; false at the end, with `entry` untouched.
    bool Next(Entry& entry);

    /// The folder of the entry that Next gave last, ending in a backslash.
    CXTString<char16_t> const& GetFolder() const { return folder; }

private:
    CXTString<char16_t> folder;
    CXArray<CXTString<char16_t>> toEnter; ///< Last one first.
    CXArray<CXTString<char16_t>> found;   ///< Folders met in the present folder, in order.
    Depth depth;
    void* search = nullptr; ///< The open search of the present folder; null between folders.
};
