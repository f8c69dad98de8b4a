// SPDX-License-Identifier: MIT
// Open files. Paths are the toolkit's (native_path.h); every failure is told by the last error (errors.h).
//
// Share modes are real between the toolkit's own files, in one process or in several: a file opens only when each
// access asked (read, write, delete) is shared by every file object that has it open, and when each access that those
// have is shared by the new one. Otherwise the error is ErrorSharingViolation and the file is untouched. The rule is
// kept by advisory open-file-description locks on bytes far behind any content, so other programs neither see nor
// break it, and it ends with the handle, also when the process is killed. On a file system without such locks, and on
// what is no regular file, everything is shared.
//
// A handle holds its descriptor and what it may do in the pointer itself; there is nothing to allocate and nothing to
// look up. Reading and writing through one handle moves one position, shared by its duplicates.
//
// Threads: any, but calls on one handle come one at a time. A call that blocks is ended by CancelSynchronousIo
// with ErrorOperationAborted.

#pragma once

#include "zeltools/platform/handle.h"
#include "zeltools/platform/system_records.h"

#include <cstddef>

namespace platform {

inline constexpr unsigned int GenericRead = 0x80000000;
inline constexpr unsigned int GenericWrite = 0x40000000;
inline constexpr unsigned int AccessDelete = 0x00010000;
inline constexpr unsigned int AccessReadAttributes = 0x0080;
inline constexpr unsigned int AccessWriteAttributes = 0x0100;

inline constexpr unsigned int ShareRead = 1;
inline constexpr unsigned int ShareWrite = 2;
inline constexpr unsigned int ShareDelete = 4;

enum Disposition : unsigned int {
    CreateNew = 1,        ///< The file must not exist: else ErrorFileExists.
    CreateAlways = 2,     ///< Creates, or cuts an existing file to nothing once its share modes allowed it.
    OpenExisting = 3,     ///< The file must exist.
    OpenAlways = 4,       ///< Opens, or creates.
    TruncateExisting = 5, ///< The file must exist and is cut to nothing.
};

inline constexpr unsigned int FileAttributeReadOnly = 0x001;
inline constexpr unsigned int FileAttributeHidden = 0x002;
inline constexpr unsigned int FileAttributeDirectory = 0x010;
inline constexpr unsigned int FileAttributeNormal = 0x080;       ///< None of the others.
inline constexpr unsigned int FileAttributeReparsePoint = 0x400; ///< A symbolic link.

inline constexpr unsigned int FileFlagWriteThrough = 0x80000000;
inline constexpr unsigned int FileFlagRandomAccess = 0x10000000;
inline constexpr unsigned int FileFlagSequentialScan = 0x08000000;
inline constexpr unsigned int FileFlagDeleteOnClose = 0x04000000;   ///< Asks for AccessDelete too.
inline constexpr unsigned int FileFlagBackupSemantics = 0x02000000; ///< A folder may be opened, for its attributes.

/// Opens or creates a file. The descriptor is not inherited by programs that the process starts.
///
/// @param access       GenericRead, GenericWrite, AccessDelete, the two for attributes, or several. Reading or writing
///                     beyond the access is refused with ErrorAccessDenied.
/// @param share        What other file objects may do meanwhile: ShareRead, ShareWrite, ShareDelete. 0: nothing.
/// @param disposition  A Disposition.
/// @param flags        FileAttributeReadOnly for a new file, and the FileFlag values; other bits are ignored.
///                     FileFlagDeleteOnClose deletes the name when this handle (not a duplicate) is closed.
/// @return the handle, to be closed by CloseFile, or InvalidHandle. CreateAlways and OpenAlways set the last error to
///         ErrorAlreadyExists when they met a file and to ErrorSuccess when they made one.
/// Errors:  ErrorAccessDenied for a folder; ErrorFileNotFound, ErrorPathNotFound, ErrorFileExists,
///          ErrorSharingViolation, ErrorInvalidParameter for a disposition that there is not, and what the disk says.
HANDLE CreateFileW(char16_t const* path, unsigned int access, unsigned int share, unsigned int disposition,
                   unsigned int flags);

/// Closes a handle. False with the error of a delayed write; the handle is gone all the same.
bool CloseFile(HANDLE file);

/// Makes a second handle of the same open file: same access, same position, same share modes, which last until both are
/// closed. InvalidHandle on failure.
HANDLE DuplicateFile(HANDLE file);

/// Reads up to `size` bytes at the position; less only at the end of the file, or from what is no regular file.
///
/// @param read  Receives the number of bytes read, 0 at the end; also after a failure.
bool ReadFile(HANDLE file, void* data, std::size_t size, std::size_t& read);

/// Writes `size` bytes at the position.
///
/// @param written  Receives the number of bytes that were written, also after a failure: a full disk takes a part.
bool WriteFile(HANDLE file, void const* data, std::size_t size, std::size_t& written);

enum SeekOrigin : unsigned int {
    FileBegin = 0,
    FileCurrent = 1,
    FileEnd = 2
};

/// Moves the position. ErrorNegativeSeek for a place before the beginning, which leaves the position as it was; a
/// place behind the end is allowed.
///
/// @param position  Receives the new position; may be null.
bool SetFilePointer(HANDLE file, long long distance, long long* position, SeekOrigin origin);

/// Gives the size in bytes. False for what has none.
bool GetFileSize(HANDLE file, unsigned long long& sizeBytes);

/// Makes the position the end of the file: cuts it, or lengthens it with zeros.
bool SetEndOfFile(HANDLE file);

/// Waits until everything written is on the disk.
bool FlushFileBuffers(HANDLE file);

/// Changes the times of an open file; a null one stays. The creation time cannot be changed on this system: a non-null
/// one fails with ErrorNotSupported before anything is changed. Needs AccessWriteAttributes or GenericWrite.
bool SetFileTime(HANDLE file, FILETIME const* creation, FILETIME const* lastAccess, FILETIME const* lastWrite);

/// The system's descriptor of an open file, which the handle goes on owning; -1 for no handle.
int GetFileDescriptor(HANDLE file);

/// Makes a handle of a descriptor, with the access that the descriptor has. The handle owns the descriptor from then
/// on. InvalidHandle when it is none.
HANDLE HandleFromFileDescriptor(int descriptor);

} // namespace platform
