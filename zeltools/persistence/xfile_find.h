// SPDX-License-Identifier: MIT
// CXFileFind: the entries of a folder that match a pattern.
//
//     CXFileFind find;
//     for (bool hasMore = find.FindFile(u"\\home\\ana\\*.png"); hasMore;) {
//         hasMore = find.FindNextFileW();        // false says that the entry now shown is the last
//         use(find.GetFilePath());
//     }

#pragma once

#include "zeltools/files/paths/file_find_info.h"
#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xobject.h"
#include "zeltools/foundation/xstring.h"

/// A search in a folder. Without one under way every question is answered by false, 0 or the empty text.
///
/// Threads: one object belongs to one thread at a time.
class ZEL_API CXFileFind : public CXObject {
    ZEL_DECLARE_RUNTIME_CLASS(CXFileFind)

public:
    CXFileFind() = default;
    CXFileFind(CXFileFind const&) = delete;
    CXFileFind& operator=(CXFileFind const&) = delete;
    ~CXFileFind() override;

    /// Begins a search. The first entry is shown by the first FindNextFileW.
    ///
    /// @param pattern  A path with or without wildcards in its last part, fewer than 260 characters; relative to the
    ///                 current directory. Null: `*.*`, every entry.
    /// @return false when nothing matches, with the system's last error: 160 for a pattern that is too long.
    bool FindFile(char16_t const* pattern = nullptr);

    /// Shows the next entry.
    /// @return whether another one follows; false for the last one, which is shown all the same, and without a search.
    bool FindNextFileW();

    /// Ends the search.
    void Close();

    CXTString<char16_t> GetFileName() const;

    /// The folder's path and the name, with a backslash behind a directory.
    CXTString<char16_t> GetFilePath() const;

    /// Bytes; 0 for a directory.
    unsigned long long GetFileLength() const;

    /// Whether the entry is a directory named `.` or `..`.
    bool IsDots() const;

    bool IsDirectory() const { return IsFileAttributeSet(XFILE_ATTRIBUTE_DIRECTORY); }
    bool IsReadOnly() const { return IsFileAttributeSet(XFILE_ATTRIBUTE_READONLY); }
    bool IsHidden() const { return IsFileAttributeSet(XFILE_ATTRIBUTE_HIDDEN); }
    bool IsNormal() const { return IsFileAttributeSet(XFILE_ATTRIBUTE_NORMAL); }

    bool IsFileAttributeSet(XFILE_ATTRIBUTE attribute) const { return AreFileAttributesSet(attribute, false); }

    /// Whether all bits of the mask are set, or any.
    bool AreFileAttributesSet(unsigned int mask, bool all) const;

private:
    xFileFindInfo currentEntry;
    xFileFindInfo nextEntry;
    CXTString<char16_t> root; ///< The folder, slash-terminated.
    void* findHandle = nullptr;
};
