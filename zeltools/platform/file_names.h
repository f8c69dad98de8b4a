// SPDX-License-Identifier: MIT
// Questions and changes that go by a file's name: attributes, delete, copy, move, folders. Open files are in files.h,
// which also says what share modes are.
//
// All of them are atomic towards other processes unless they say otherwise, set the last error on failure and leave
// everything as it was then. A drive, server, relative or rooted path is good for each.
//
// Threads: any. A call that blocks is ended by CancelSynchronousIo with ErrorOperationAborted.

#pragma once

#include "zeltools/platform/files.h"

namespace platform {

struct FileAttributeData {
    unsigned int attributes = 0; ///< FileAttribute bits.
    FILETIME creation{};         ///< Time of birth; time of the last change of status where the disk keeps none.
    FILETIME lastAccess{};
    FILETIME lastWrite{};
    unsigned long long sizeBytes = 0; ///< 0 for a folder.
};

inline constexpr unsigned int InvalidFileAttributes = 0xFFFFFFFF;

/// Reads what a name leads to. Symbolic links are followed and marked with FileAttributeReparsePoint; a link that leads
/// nowhere is ErrorFileNotFound. Hidden are the names that begin with a dot, read-only the files that nobody has
/// the right to write. False leaves `data` untouched.
bool GetFileAttributesExW(char16_t const* path, FileAttributeData& data);

/// The attributes alone, or InvalidFileAttributes.
unsigned int GetFileAttributesW(char16_t const* path);

/// Deletes a file's name, or a symbolic link and never what it leads to. ErrorAccessDenied for a folder,
/// ErrorSharingViolation when a file object has it open without ShareDelete.
bool DeleteFileW(char16_t const* path);

/// Copies a file with its permissions and its time of last write. The copy is written beside `to`, flushed to the disk
/// and put in place whole, so that a crash, a full disk or a cancelled call leaves the old file or the new one.
///
/// @param failIfExists  An existing `to` is ErrorFileExists; the test and the creation are one step. A copy over a
///                      symbolic link replaces the file that the link leads to.
/// Errors:  ErrorSharingViolation when a file object has `from` open without ShareRead or `to` open at all without
///          sharing; ErrorAccessDenied for folders; ErrorSharingViolation for a copy onto itself.
bool CopyFileW(char16_t const* from, char16_t const* to, bool failIfExists);

/// Gives a file the permissions of another: what takes a file's place must not be open to more people than it was.
bool CopyPermissions(char16_t const* from, char16_t const* to);

inline constexpr unsigned int MoveReplaceExisting = 1; ///< An existing file `to` is replaced.
inline constexpr unsigned int MoveCopyAllowed = 2; ///< A file may be copied to another file system and deleted here.

/// Moves or renames a file or folder. Without MoveReplaceExisting nothing is ever replaced: an existing `to` is
/// ErrorAlreadyExists, whoever created it and when, except that a name's letters may change case. A folder is never
/// replaced and never moved to another file system (ErrorAccessDenied, ErrorNotSameDevice).
/// ErrorSharingViolation when a file object has `from` open without ShareDelete.
bool MoveFileExW(char16_t const* from, char16_t const* to, unsigned int flags);

/// MoveFileExW with MoveCopyAllowed.
bool MoveFileW(char16_t const* from, char16_t const* to);

/// Makes a folder. ErrorAlreadyExists when the name is taken, ErrorPathNotFound when the folder above is missing.
bool CreateDirectoryW(char16_t const* path);

/// Removes an empty folder, or a symbolic link to a folder and never what it leads to. ErrorDirectoryNotEmpty,
/// ErrorDirectory for a file.
bool RemoveDirectoryW(char16_t const* path);

/// The native system's question for an open that tests an access: opens `path` with the access and share modes of
/// CreateFileW, closes it at once and never follows it with a read.
///
/// @param create  The file must not exist; it is created, and deleted again by the close.
/// @return ErrorSuccess or the error. The thread's last error is left alone.
unsigned int NtCreateFile(char16_t const* path, unsigned int access, unsigned int share, bool create);

} // namespace platform
