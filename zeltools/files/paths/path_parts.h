// SPDX-License-Identifier: MIT
// The splitting of a file name: root, path, name, extension and query, without the file type registry. Parsed file
// names and the path functions are built on it. The disk is asked only where a caller asks for it.
//
//     PathParts parts(u"C:/dir/../img 12.tif");
//     parts.GetCompleteName()   // C:\img 12.tif
//     parts.GetRoot()           // C:\,
//     parts.GetPath()           // C:\,
//     parts.GetName()           // img 12
//     parts.GetExtension()      // .tif
//
// The parts are views into the one canonical text wherever they can be, so that a split costs one allocation.

#pragma once

#include "zeltools/files/paths/file_name_type.h"
#include "zeltools/foundation/xstring.h"

#include <string_view>

namespace detail {

/// A parsed file name. A view that it gives is valid until the next Init, AskDisk or Exists. One thread at a time.
class PathParts {
public:
    /// Bits of the flags word.
    enum Flag : unsigned int {
        Directory = 0x1,
        UncPath = 0x2,  ///< Valid once UncTested is set.
        Shortcut = 0x4, ///< Valid once ShortcutTested is set.
        Url = 0x8,
        Found = 0x100, ///< Valid once ExistenceTested is set.
        PathExtracted = 0x1000,
        UncTested = 0x2000,
        ShortcutTested = 0x4000,
        ExistenceTested = 0x8000,
        StaysRelative = 0x10000
    };

    /// Added to the mode: ask the disk whether the name exists and is a directory.
    static constexpr unsigned int AskDisk = 0x10000;

    PathParts() = default;

    /// Parses with Init.
    explicit PathParts(CXTString<char16_t> const& text, unsigned int mode = FileNameTypeAuto) { Init(text, mode); }

    /// Parses a text, forgetting what was there.
    ///
    /// Slashes become backslashes, `C:foo` becomes `C:\foo`, `.` and `..` vanish. A path becomes absolute by the
    /// current directory unless it is an address's or the mode says otherwise; a name without any backslash has no
    /// path. The empty text sets every bit that stands for a test already made.
    ///
    /// @param mode     A FILENAME_TYPE, plus AskDisk, which counts for FileNameTypeAuto and FileNameTypeDirectory.
    /// @param timeOut  Guards the disk's answer, as in fileExists.
    void Init(CXTString<char16_t> const& text, unsigned int mode = FileNameTypeAuto, unsigned int* timeOut = nullptr);

    /// The canonical text. A directory's is its path, slash-terminated; an address that is a directory has neither.
    CXTString<char16_t> const& GetCompleteName() const { return m_text; }
    std::u16string_view GetRoot() const;
    std::u16string_view GetPath() const;
    /// The name without extension, and without the query of an address.
    std::u16string_view GetName() const;
    std::u16string_view GetExtension() const;
    /// The query of an address, without `?`.
    CXTString<char16_t> const& GetQuery() const { return m_query; }

    unsigned int GetFlags() const { return m_flags; }
    /// Sets bits; they only grow.
    void AddFlags(unsigned int flags) { m_flags |= flags; }
    int GetDotPosition() const { return m_dotPosition; }
    int GetSlashPosition() const { return m_slashPosition; }
    int GetQueryPosition() const { return m_queryPosition; }
    /// Length of the canonical text when it was parsed.
    int GetLength() const { return m_length; }

    bool IsDirectory() const { return (m_flags & Directory) != 0; }
    bool IsUrl() const { return (m_flags & Url) != 0; }
    bool IsUncPath();

    /// Whether the name can be reached on the disk; asked once. A UNC path waits 10 ms at most, and an answer that did
    /// not come in time is asked for again.
    bool Exists();

    /// What follows the root in the path; empty without a root.
    std::u16string_view GetPathWithoutRoot() const;
    /// The deepest directory's own name; for a path that ends in two backslashes, one backslash.
    std::u16string_view GetTopDirectory() const;
    /// The path up to the directory above it; empty where there is none, as above a server.
    std::u16string_view GetParentDirectory() const;

    /// Path, name and extension in one text, with another name.
    CXTString<char16_t> WithName(std::u16string_view name) const;

    // The steps of Init, in their order, each on the canonical text as it is now. The path is taken once; a directory
    // has no name.
    void ExtractRoot();
    void ExtractPath();
    void ExtractQuery();
    void ExtractName();
    void ExtractExtension();

private:
    struct Part {
        int first = 0;
        int length = 0;
    };

    std::u16string_view View(Part part) const;
    void Normalize(CXTString<char16_t> const& text);
    void ClassifyByText();
    void TakeAttributes(unsigned int* timeOut);
    void TakeWholeAsPath();
    void ReplaceTextByPath();

    CXTString<char16_t> m_text;
    Part m_rootPart;
    Part m_pathPart;
    Part m_namePart;
    Part m_extensionPart;
    // What is no part of the text stands here: a root without backslash behind it, a path made absolute, a name that
    // lost its query. They count where they are not empty.
    CXTString<char16_t> m_ownRoot;
    CXTString<char16_t> m_ownPath;
    CXTString<char16_t> m_ownName;
    CXTString<char16_t> m_query;
    unsigned int m_flags = 0;
    int m_dotPosition = -1;
    int m_slashPosition = -1;
    int m_queryPosition = -1;
    int m_length = 0;
};

/// Finds the number in a name without extension, as image sequences have it: a run of digits at the end, or, unless
/// `trailingOnly`, one at the start, or else the last one in the middle. Blanks around it do not count.
///
/// @param pattern  Receives the name without the digits, with `*` in their place where `star` is set.
/// @param digits   Receives the digits.
/// @return the number, its low 32 bits where it is longer; -1 without digits, then `pattern` is the name.
int GetDigitInfo(std::u16string_view name, CXTString<char16_t>& pattern, CXTString<char16_t>& digits, bool star,
                 bool trailingOnly);

} // namespace detail
