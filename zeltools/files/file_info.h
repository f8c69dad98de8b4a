// SPDX-License-Identifier: MIT
// The parsed view of a file name: its root, directory, name, extension and query, and, through the file type
// registry, the parser that applies and whether another may be tried after a failure.
//
//     CFileInfo info(u"C:\\textures\\..\\film.wmv");
//     info.GetPath()              // u"C:\\"
//     info.GetName()              // u"film.wmv"
//     info.GetClass()             // FourCC("MPG4"), the first of the two parsers of .wmv
//     info.TryNextParser();
//     info.GetClass()             // FourCC("WMV ")
//
// | text                   | path          | name without extension | extension | query |
// |------------------------|---------------|------------------------|-----------|-------|
// | C:\a\b.tar.gz          | C:\a\         | b.tar                  | .gz       |       |
// | C:foo.txt              | C:\           | foo                    | .txt      |       |
// | C:\dir\                | C:\dir\       |                        |           |       |
// | http://h/a/b.png?v=1.5 | http:\\h\a\   | b                      | .png      | v=1.5 |
// | a.txt                  |               | a                      | .txt      |       |
// | a/b.txt                | <working folder>\a\ | b                | .txt      |       |
// | .profile               |               |                        | .profile  |       |
// | ..\w\b.png             | \w\           | b                      | .png      |       |
//
// The last row is no relative name any more: a text is made canonical by itself, and `..` has nothing to leave. A host
// that takes relative names makes them absolute first (fileMakeAbsolutePath).
//
// The directory test is textual: only a text that ends in a backslash is a directory, unless the disk is asked.
// Splitting never touches the disk, never throws and never fails: what is missing is empty.

#pragma once

#include "zeltools/files/file_ext.h"
#include "zeltools/files/file_name_spec.h"
#include "zeltools/files/paths/file_name_type.h"
#include "zeltools/files/paths/path_parts.h"
#include "zeltools/files/registered_file.h"
#include "zeltools/foundation/api.h"
#include "zeltools/foundation/hash_table.h"
#include "zeltools/foundation/xstring.h"

/// One parsed name. Copies are independent; one thread at a time.
class ZEL_API CFileInfo {
public:
    CFileInfo() = default;
    /// Parses at once, in the automatic mode and without the disk.
    explicit CFileInfo(CFileNameSpec const& spec);
    virtual ~CFileInfo() = default;
    CFileInfo(CFileInfo const&) = default;
    CFileInfo& operator=(CFileInfo const&) = default;

    /// Bit of Init's mode: ask the disk whether the text names a directory.
    static constexpr unsigned int AskDisk = 0x10000;

    /// Parses a name; what the object held before is gone.
    ///
    /// @param mode     A FILENAME_TYPE, with AskDisk where the disk should be asked (automatic and directory mode
    ///                 only). An existing directory that is written without its final backslash loses its complete
    ///                 name in the automatic mode with AskDisk: give the backslash, or FileNameTypeDirectory.
    /// @param timeOut  Limit of the question to the disk, by the rule of every guarded query (io_time_out.h).
    void Init(CFileNameSpec const& spec, unsigned int mode, unsigned int* timeOut);

    // ---- The parts of the name -------------------------------------------------------------------------------

    /// The canonical text; a directory's ends in a backslash. Empty for an address that is a directory, which keeps
    /// nothing but its query.
    CXTString<char16_t> const& GetCompleteName() const { return parts.GetCompleteName(); }
    /// Name and extension.
    CXTString<char16_t> GetName() const;
    CXTString<char16_t> GetNameWithoutExt() const;
    /// With its dot, as written.
    CXTString<char16_t> GetExtension() const;
    CXTString<char16_t> GetPath() const;
    CXTString<char16_t> GetRoot() const;
    /// What follows the root in the path; empty when either is empty.
    CXTString<char16_t> GetPathWithoutRoot() const;
    /// The query of a URL, with the `?` in front when asked for; empty for anything else.
    CXTString<char16_t> GetQuery(bool withMark) const;
    /// The deepest directory's own name.
    CXTString<char16_t> GetTopDirectory() const;
    /// The directory above the path, ending in a backslash; empty for a root and for a server.
    CXTString<char16_t> GetParentDirectory() const;

    // ---- The parser ------------------------------------------------------------------------------------------

    unsigned int GetClass() const { return classId; }
    /// Adds the class of every parser of the extension to a table.
    /// @return the number of parsers.
    unsigned int GetClass(CHashTable<unsigned int>& classes) const;
    IoPluginCallback GetInitIoCallback() const { return callback; }
    unsigned int GetProperties() const { return properties; }
    /// The high half of the properties, in place.
    unsigned int GetKindOf() const { return properties & FileKindMask; }
    unsigned int GetLoader() const { return loader; }
    unsigned int GetSaver() const { return saver; }
    /// How many parsers the extension has.
    unsigned int GetParserNbr() const;
    bool CanTryAnotherParser() const { return (flags & AnotherParserAllowed) != 0; }
    /// Goes on to the extension's next parser, where that is allowed; otherwise nothing changes.
    void TryNextParser();

    // ---- What the name stands for ----------------------------------------------------------------------------

    bool IsDirectory() const { return parts.IsDirectory(); }
    bool IsFile() const { return !IsDirectory() && !IsURL(); }
    bool IsURL() const { return parts.IsUrl(); }
    /// Asked once and remembered.
    bool IsUNCPath() { return parts.IsUncPath(); }
    /// Whether it is a readable `.lnk` file; asked of the disk once and remembered.
    bool IsShortcut();
    /// The target of a shortcut, otherwise the complete name.
    CXTString<char16_t> ResolveShortcut();
    /// Whether it exists; asked of the disk once and remembered, unless the answer did not come in time. A directory
    /// that is found becomes one here too, with its final backslash.
    ///
    /// @param timeOut  Ignored: a UNC path always has 10 milliseconds, since callers ask this of whole lists.
    bool Exists(unsigned int* timeOut);
    /// Whether a text names the same complete name, or has the same path, without regard to ASCII case.
    bool IsSameFile(CXTString<char16_t> const& other) const;
    bool IsSameDir(CXTString<char16_t> const& other) const;

    // ---- Numbers in names ------------------------------------------------------------------------------------

    /// The number in a path's name, or -1: the trailing one, otherwise the leading one, otherwise the last one.
    static int GetDigit(CXTString<char16_t> const& path);

    /// Finds the number in the name without extension.
    ///
    /// @param pattern       Receives the name without the number, which is how the other files of an image sequence
    ///                      are found; the whole name when there is no number.
    /// @param digits        Receives the number's text.
    /// @param star          Puts `*` in the number's place in the pattern.
    /// @param trailingOnly  Leaves a leading number alone.
    /// @return the number, or -1.
    int GetDigitInfo(CXTString<char16_t>& pattern, CXTString<char16_t>& digits, bool star, bool trailingOnly) const;

    // ----------------------------------------------------------------------------------------------------------

protected:
    // The steps by which Init splits the complete name, in their order, for a class that takes one again.

    void ExtractRoot() { parts.ExtractRoot(); }
    /// Does nothing when the path has been taken already, as it has after Init.
    void ExtractPath() { parts.ExtractPath(); }
    void ExtractQuery() { parts.ExtractQuery(); }
    /// Does nothing for a directory.
    void ExtractName() { parts.ExtractName(); }
    void ExtractExtension() { parts.ExtractExtension(); }

private:
    /// Bits that this class adds to the flags of the parts.
    enum Flag : unsigned int {
        AnotherParserAllowed = 0x20000,
        SeveralParsers = 0x100000,
    };

    void FindParser(bool defaultChoice);
    void Take(CRegisteredFile::Parser const& parser);

    detail::PathParts parts;
    CXTString<char16_t> shortcutTarget;
    unsigned int loader = FileIdUnknown;
    unsigned int saver = FileIdUnknown;
    unsigned int classId = 0;
    unsigned int properties = 0;
    IoPluginCallback callback = nullptr;
    unsigned int parserNumber = 0; ///< Index of the current parser among those of the extension.
    unsigned int flags = 0;        ///< Of `Flag`.
};
