// SPDX-License-Identifier: MIT
// The file that a parser reads or writes: binary or text, straight from the disk or through memory, with the byte order
// reversed where the format asks for it. It also walks through a folder's files by pattern and file type.
//
//     IoFile file(true, IoFileMemory);
//     unsigned int magic = 0;
//     if (file.OpenFile(u"C:\\a.tga", true, nullptr) && file.FileReverseRead(&magic, sizeof(magic))) {
//         ...
//     }
//     file.CloseFile(false);

#pragma once

#include "zeltools/files/paths/file_name_type.h"
#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/persistence/xfile.h"

#include <cstdio>
#include <memory>

class CCustomMemFile;
class CStdioFileEx;
class CXException;
class CXFileException;
class CXFileFind;

namespace detail {
class BusyIndicator;
class IoMemoryFile;
} // namespace detail

/// Bits of an IoFile's flags.
enum IoFileFlag : unsigned int {
    IoFileSilent = 0x1, ///< No message boxes, no busy indicator.
    /// The whole file lives in memory, which makes many small reads and seeks fast. What is written reaches the disk
    /// when the file is closed. Not for writing text; and a file beyond IoFileMemoryLimit is read from the disk, which
    /// clears the bit.
    IoFileMemory = 0x2,
    IoFileThrow = 0x4,      ///< A short read throws, and so do the other failures after the opening.
    IoFileText = 0x8,       ///< Text; otherwise the file is binary.
    IoFileWideText = 0x10,  ///< Without IoFileText: WriteString writes 16-bit units.
    IoFileUtf8Text = 0x20,  ///< With IoFileText: UTF-8 where the file does not tell its encoding.
    IoFileReading = 0x1000, ///< Set and cleared by OpenFile.
};

/// The largest file, in bytes, that is read through memory.
inline constexpr unsigned long long IoFileMemoryLimit = 102'400'000;

/// One open file, and at the same time one walk through a folder.
///
/// Failures: without IoFileThrow nothing throws after the opening either. A read then tells a failure by its result,
/// and
///           a failed write is not told at all: who must know sets IoFileThrow, and lets CloseFile throw too.
/// Threads:  one at a time.
class ZEL_API IoFile {
public:
    /// A silent one, binary and from the disk.
    IoFile();
    explicit IoFile(unsigned int flags);
    /// @param silent  Adds IoFileSilent to the flags.
    IoFile(bool silent, unsigned int flags);
    /// Aborts what is open: what was written through memory and never closed is lost.
    virtual ~IoFile();
    IoFile(IoFile const&) = delete;
    IoFile& operator=(IoFile const&) = delete;

    /// Sets the flags of an object that is not in use. A finder that it still has is let go of and not deleted: it
    /// belongs to whoever took it by GetFileFinder.
    void Init(unsigned int flags);

    // ---- Opening and closing ---------------------------------------------------------------------------------

    /// Opens a file, after aborting the one that is open. Others may read meanwhile what is read; nobody may touch
    /// what is written, which is created or emptied.
    ///
    /// @param error  Receives cause and path of a failure; may be null.
    /// @return false on failure, with nothing open; then ReportError has told the user what GetErrorMessage cannot.
    bool OpenFile(CXTString<char16_t> const& path, bool forRead, CXFileException* error);

    /// Closes the file and ends the walk. What was written through memory goes to the disk first.
    ///
    /// @param abort  Throws nothing for a close that fails. The content goes to the disk all the same.
    void CloseFile(bool abort);

    /// Closes as CloseFile does, then deletes the file. A close that throws has deleted it too.
    void CloseAndDeleteFile(bool abort);

    /// Lets go of everything at once, without writing what lies in memory.
    void DeleteFiles();

    // ---- Reading ---------------------------------------------------------------------------------------------

    /// Reads exactly `size` bytes. False for fewer, of which the buffer then holds what came.
    /// Errors: with IoFileThrow, CXFileException of cause endOfFile for fewer.
    bool FileRead(void* data, unsigned int size);

    /// Reads up to `size` bytes and answers how many came.
    /// Errors: with IoFileThrow, CXFileException of cause endOfFile for 0.
    unsigned int FileBufferRead(void* data, unsigned int size);

    /// FileRead, and then the whole block reversed. A short read leaves the bytes in the file's order.
    bool FileReverseRead(void* data, unsigned int size);
    /// FileRead of `count` items, and then each of them reversed.
    bool FileReverseRead(void* data, unsigned int count, unsigned int itemSize);

    /// Reads a line without its end; false at the end of the file.
    bool ReadString(CXTString<char16_t>& line);

    // ---- Writing ---------------------------------------------------------------------------------------------

    void FileWrite(void const* data, unsigned int size);
    /// Writes the block's bytes in reverse order; the block itself stays as it is.
    void FileReverseWrite(void* data, unsigned int size);
    /// Writes `count` items, each in reverse order.
    void FileReverseWrite(void* data, unsigned int count, unsigned int itemSize);

    // Numbers in the machine's byte order.

    void WriteFloat(float value) { FileWrite(&value, sizeof(value)); }
    void WriteInt(int value) { FileWrite(&value, sizeof(value)); }
    void WriteUInt(unsigned int value) { FileWrite(&value, sizeof(value)); }
    void WriteShort(short value) { FileWrite(&value, sizeof(value)); }
    void WriteUShort(unsigned short value) { FileWrite(&value, sizeof(value)); }
    void WriteChar(char value) { FileWrite(&value, sizeof(value)); }
    void WriteUChar(unsigned char value) { FileWrite(&value, sizeof(value)); }

    /// Writes a text in the file's encoding. Nothing is added: the text brings its line ends.
    void WriteString(char16_t const* text);

    /// Hands what was written to the system; does nothing for a file that is read.
    void Flush();

    // ---- The position ----------------------------------------------------------------------------------------

    /// Moves to a place; false when there is none.
    bool FileSeek(long long offset, CXFile::SeekPosition origin);
    /// The position in bytes, after a flush of what was written. All ones where it cannot be had.
    unsigned long long FileGetPosition();
    /// The length in bytes, after a flush of what was written.
    unsigned long long FileGetLength();

    // ---- Asking ----------------------------------------------------------------------------------------------

    /// The object that reads and writes go to: the file in memory or the one on disk; null when nothing is open.
    CXFile* GetCFile() const { return currentFile; }
    /// The file on disk; null when nothing is open.
    CStdioFileEx* GetTextFile() const { return textFile.get(); }
    std::FILE* GetFileStream() const;
    /// The path as OpenFile got it; it stays after the close.
    CXTString<char16_t> const& GetFileName() const { return path; }
    /// The path's directory, ending in a backslash.
    CXTString<char16_t> GetFilePath() const;
    /// The path's last component.
    CXTString<char16_t> GetName() const;
    CXFileFind* GetFileFinder() const { return finder.get(); }
    bool IsWriting() const { return (flags & IoFileReading) == 0; }
    bool IsBinaryMode() const { return (flags & IoFileText) == 0; }

    // ---- Walking through a folder ----------------------------------------------------------------------------

    /// Starts a walk through the entries of a folder whose names begin like a path's.
    ///
    /// | path         | pattern | finds                                    |
    /// |--------------|---------|------------------------------------------|
    /// | `C:\a\`      |         | everything in `C:\a`                     |
    /// | `C:\a\b`     |         | everything in `C:\a` that begins with b  |
    /// | `C:\a\b`     | `*.png` | what ends in `.png` too                  |
    /// | `C:\a\b.tif` | `*.png` | what begins with b and ends in `.tif`    |
    ///
    /// @param pattern  Only its extension counts, where the path has none. Empty for `*.*`.
    /// @param type     How the path is parsed.
    /// @return whether anything was found.
    bool FindFileOpen(CXTString<char16_t> const& searchPath, CXTString<char16_t> const& pattern, FILENAME_TYPE type);

    /// Gives the next entry, save `.` and `..`.
    ///
    /// @param found        Receives its path, ending in a backslash for a folder; untouched when there is none left.
    /// @param filterless   Receives whether every extension was asked for; untouched when there is none left.
    /// @param applyFilter  Skips an entry whose file type has another main extension than the one asked for: with
    ///                     `*.jpeg`, where the type's main extension is `.jpg`, nothing is found.
    bool FindFileNext(CXTString<char16_t>& found, bool& filterless, bool applyFilter);

    /// Ends the walk.
    void FindFileClose();

    // ---- Errors ----------------------------------------------------------------------------------------------

    /// Makes a text for the user of an exception, in the thread's language, with the file's shortened path.
    ///
    /// A file exception that was made with a text tells that; another tells its cause where it is one that a user can
    /// do something about, and else whether reading or writing failed.
    ///
    /// @param exception  A file exception without a name receives the stored path. May be null.
    /// @return false, with an empty text, for a CXUserException.
    bool GetErrorMessage(CXTString<char16_t>& text, CXException* exception);

    /// Shows a message box where GetErrorMessage answers false, unless the object is silent: an exception with a text
    /// is left to the caller, who shows it when the whole operation has ended.
    void ReportError(CXException* exception);

    // ----------------------------------------------------------------------------------------------------------

private:
    bool OpenForReading(CXFileException& error);
    bool OpenForWriting(CXFileException& error);
    bool ReadIntoMemory(CXFileException& error);
    void CloseTextFile(bool abort);
    void ReleaseFiles();
    bool FailShort() const;
    unsigned long long ReadBytes(void* data, unsigned long long size);
    void WriteBytes(void const* data, unsigned long long size);
    bool ReadWhole(void* data, unsigned long long size);
    bool IsBeforeBegin(long long offset, CXFile::SeekPosition origin);
    void WriteStringToMemory(char16_t const* text);
    bool Throws() const { return (flags & IoFileThrow) != 0; }

    unsigned int flags;
    std::unique_ptr<CStdioFileEx> textFile;
    std::unique_ptr<detail::IoMemoryFile> memoryFile;
    CXFile* currentFile = nullptr; ///< One of the two above; not owned.
    CXTString<char16_t> path;
    std::unique_ptr<CXFileFind> finder;
    bool hasNextEntry = false;
    CXTString<char16_t> extensionFilter; ///< With its dot.
    std::unique_ptr<detail::BusyIndicator> busyIndicator;
};
