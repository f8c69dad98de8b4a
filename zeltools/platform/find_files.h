// SPDX-License-Identifier: MIT
// Lists the entries of a folder that match a pattern.
//
//     FindData entry;
//     HANDLE search = FindFirstFileW(u"\\home\\ana\\*.png", entry);
//     if (search == InvalidHandle) ... GetLastError() ...
//     do { ... entry.name ... } while (FindNextFileW(search, entry));
//     bool complete = GetLastError() == ErrorNoMoreFiles;
//     FindClose(search);
//
// `.` and `..` come first where the pattern matches them, except at a root, which has none. Then come the names in a
// stable order: letters A to Z without regard to case, everything else by its code, equal ones by their bytes. The
// names are taken from the disk when the search opens, in one block of memory; the facts of an entry (one question
// to the system) when it is given out. An entry that is deleted in between is left out.
//
// Threads: any, one thread at a time for each search.

#pragma once

#include "zeltools/platform/handle.h"
#include "zeltools/platform/system_records.h"

#include <string>

namespace platform {

struct FindData {
    std::u16string name;         ///< Last component, toolkit form.
    unsigned int attributes = 0; ///< As GetFileAttributesExW gives them, but a link that leads nowhere is an entry too.
    unsigned int error = 0;      ///< Why the facts below could not be read; ErrorSuccess when they are good.
    FILETIME creation{};
    FILETIME lastAccess{};
    FILETIME lastWrite{};
    unsigned long long sizeBytes = 0; ///< 0 for a folder.
};

/// Opens a search and gives its first entry.
///
/// @param pattern  A path whose last component may have wildcards (find_pattern.h). A component with wildcards is
///                 compared without regard to case; one without is a name and follows the path's own rule.
/// @param entry    Untouched on failure.
/// @return the search, to be closed by FindClose, or InvalidHandle: ErrorFileNotFound when nothing matches,
///         ErrorPathNotFound when the folder is missing, and what the disk says.
HANDLE FindFirstFileW(char16_t const* pattern, FindData& entry);

/// Gives the next entry. False with ErrorNoMoreFiles at the end, or with the error that ended the reading of the folder
/// early; `entry` is untouched then.
bool FindNextFileW(HANDLE search, FindData& entry);

/// Ends a search. False for no handle.
bool FindClose(HANDLE search);

} // namespace platform
