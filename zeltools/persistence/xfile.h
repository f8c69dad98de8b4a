// SPDX-License-Identifier: MIT
// CXFile: a file on the disk, and the base of everything that reads and writes like one.
//
//     CXFileException failure;
//     CXFile file(true);
//     if (!file.Open(u"\\home\\ana\\a.png", XFILE_OPEN_READ | XFILE_SHARE_DENY_WRITE, &failure)) ... failure.cause ...
//     unsigned char head[8];
//     unsigned long long got = file.Read(head, sizeof head);     // 8, or less at the end of the file
//
// Open reports through its exception argument and never throws. Every other operation throws a CXFileException when
// the object was made to (`throwOnError`) and otherwise answers 0, false or ~0ULL. Share modes are real between files
// that the toolkit opens, in one process or in several; XFILE_SHARE values that are not named here share nothing.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xfile_exception.h"
#include "zeltools/foundation/xobject.h"
#include "zeltools/foundation/xstring.h"

class CFile;
class CXArchive;

// ---- Open flags: one access, one share mode, and what else applies ----

inline constexpr unsigned int XFILE_OPEN_READ = 0x00000000;
inline constexpr unsigned int XFILE_OPEN_WRITE = 0x00000001;
inline constexpr unsigned int XFILE_OPEN_READWRITE = 0x00000002;
inline constexpr unsigned int XFILE_SHARE_EXCLUSIVE = 0x00000010;
inline constexpr unsigned int XFILE_SHARE_DENY_WRITE = 0x00000020; ///< Others may read.
inline constexpr unsigned int XFILE_SHARE_DENY_READ = 0x00000030;  ///< Others may write.
inline constexpr unsigned int XFILE_SHARE_DENY_NONE = 0x00000040;  ///< Others may read and write.
inline constexpr unsigned int XFILE_TYPE_WIDE = 0x00000400;        ///< A text file of 16-bit characters.
inline constexpr unsigned int XFILE_TYPE_UTF8 = 0x00000800;        ///< A text file in UTF-8.
inline constexpr unsigned int XFILE_OPEN_CREATE = 0x00001000;      ///< Creates, or cuts an existing file to nothing.
inline constexpr unsigned int XFILE_OPEN_NO_TRUNCATE = 0x00002000; ///< With create: an existing file stays as it is.
inline constexpr unsigned int XFILE_TYPE_TEXT = 0x00004000;        ///< A stream that translates line ends.
inline constexpr unsigned int XFILE_TYPE_BINARY = 0x00008000;      ///< A stream that leaves the bytes alone.
/// Lets the opening constructor of CXStdioFile take a null path and stay closed.
inline constexpr unsigned int XFILE_OPEN_OPTIONAL_PATH = 0x00100000;

/// A file of the disk over one handle of the system.
///
/// Ownership: the handle is closed by the object when it opened or duplicated it, and left alone when it was given in.
///            Not copyable.
/// Threads:   one object belongs to one thread at a time; it has no lock.
class ZEL_API CXFile : public CXObject {
    ZEL_DECLARE_RUNTIME_CLASS(CXFile)

public:
    /// Where Seek counts from.
    enum SeekPosition : int {
        begin = 0,
        current = 1,
        end = 2
    };

    /// What Seek and GetPosition answer when they fail.
    static constexpr unsigned long long BadPosition = ~0ULL;

    /// A closed file.
    explicit CXFile(bool throwOnError = true);

    /// A file over the caller's handle, which the object never closes. The path is empty.
    CXFile(void* handle, bool throwOnError);

    /// A file over a duplicate of a host's open file, with the same access and position, and with its path.
    ///
    /// Where the handle cannot be duplicated the object uses the host's own, does not close it, and throws on errors
    /// whatever `throwOnError` says.
    CXFile(CFile* file, bool throwOnError);

    /// Opens at once and throws on errors from then on.
    /// Errors:  CXFileException with the cause that Open gives.
    CXFile(char16_t const* path, unsigned int flags);

    CXFile(CXFile const&) = delete;
    CXFile& operator=(CXFile const&) = delete;

    /// Closes a handle of its own; a failure of that stays silent.
    ~CXFile() override;

    /// Lays the object over the caller's handle, to throw on errors; the path stays. What was open before is closed if
    /// it was the object's own. With its own handle the object gives that to the caller.
    void Init(void* newHandle);

    /// The position in bytes.
    /// Errors:  a closed file and what has no position: CXFileException (invalidFile where the system names no other
    ///          cause), or BadPosition.
    virtual unsigned long long GetPosition() const;

    /// The last component of the path.
    virtual CXTString<char16_t> GetFileName() const;

    /// The path that the file was opened by or that SetFilePath gave; empty after Close.
    virtual CXTString<char16_t> GetFilePath() const;

    /// Changes what GetFilePath answers; the disk is not asked.
    virtual void SetFilePath(char16_t const* newPath);

    /// Opens or creates a file; one that the object had open before is closed.
    ///
    /// @param filePath  Fewer than 260 characters.
    /// @param flags     One XFILE_OPEN access (3 means reading), one share mode, and XFILE_OPEN_CREATE with or without
    ///                  XFILE_OPEN_NO_TRUNCATE; the rest belongs to derived classes.
    /// @param error     Receives cause and path on failure; may be null. Untouched on success.
    /// @return false on failure: badPath for a null, empty or too long path and for a missing folder, fileNotFound,
    ///         accessDenied also for a folder, sharingViolation, and what else the system says. An existing file is
    ///         cut only after its share modes have let this one in.
    virtual bool Open(char16_t const* filePath, unsigned int flags, CXFileException* error);

    /// Moves the position; behind the end is allowed.
    /// @return the new position, or BadPosition on failure and on a closed file; never throws.
    virtual unsigned long long Seek(long long offset, SeekPosition from);

    /// Cuts or lengthens the file, and leaves the position at its new end.
    /// Errors:  CXFileException (diskFull where the system names no cause), or false.
    virtual bool SetLength(unsigned long long newLength);

    /// The file's size in bytes.
    /// Errors:  CXFileException (accessDenied where the system names no cause), or 0.
    virtual unsigned long long GetLength() const;

    /// Reads up to `count` bytes at the position; less only at the end of the file.
    ///
    /// @param count  Its low 32 bits count.
    /// @return bytes read; 0 for a count of 0 whatever the rest is.
    /// Errors:  a closed file, a null buffer and what the system says: CXFileException (genericException where the
    ///          system names no cause), or 0.
    virtual unsigned long long Read(void* data, unsigned long long count);

    /// Writes `count` bytes at the position.
    ///
    /// @param count  Its low 32 bits count.
    /// Errors:  as Read, or nothing. Where the disk filled up after a part was written the exception's cause is
    ///          diskFull, its fileName the lone character U+FFFF, and the path is in its base message.
    virtual void Write(void const* data, unsigned long long count);

    /// Closes without ever throwing.
    virtual void Abort();

    /// Waits until everything written is on the disk; nothing for a closed file.
    /// Errors:  CXFileException (diskFull where the system names no cause), or nothing.
    virtual void Flush();

    /// Closes the handle, if it is the object's own, and empties the path. A closed file stays closed.
    /// Errors:  a delayed write's: CXFileException (genericException where the system names no cause), or nothing; the
    ///          file is closed all the same.
    virtual void Close();

    unsigned long long SeekToEnd() { return Seek(0, end); }
    unsigned long long SeekToBegin() { return Seek(0, begin); }

    /// The system's handle; null when closed.
    void* GetHandle() const { return handle; }

protected:
    friend class CXArchive;

    /// The orders of the direct-buffer protocol, by which an archive works in a file's own memory.
    enum BufferOrder : unsigned int {
        BufferRead = 0,   ///< Gives a span to read from, and moves the position behind it.
        BufferWrite = 1,  ///< Gives a span to write to; the position stays.
        BufferCommit = 2, ///< Moves the position behind `count` bytes that were written to the span.
        BufferCheck = 3   ///< 1 when the file takes part.
    };

    /// Carries out one order of the direct-buffer protocol. A file of the disk takes no part: always 0.
    ///
    /// @param count  Bytes that are wanted, or were written.
    /// @param start  Receives the span's first byte.
    /// @param max    Receives the end of the span.
    /// @return bytes in the span, or the answer to BufferCheck.
    virtual unsigned long long BufferCommand(unsigned int command, unsigned long long count, unsigned char** start,
                                             unsigned char** max);

    /// Does the work of Open without telling the hook of file_hook.h, which hears of a stream once and not twice.
    bool OpenHandle(char16_t const* filePath, unsigned int flags, CXFileException* error);

    /// Closes the handle if it is the object's own, and forgets handle and path.
    /// @return false with the system's last error when a delayed write failed.
    bool Release();

    void* handle = nullptr;
    bool closeOnDelete = false; ///< The handle is the object's own.
    bool throwOnError = true;
    CXTString<char16_t> path;

private:
    void Fail(CXFileException::FileExceptionType fallback, bool isSystemError = true) const;
};
