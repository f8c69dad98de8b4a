// SPDX-License-Identifier: MIT
// The last error of each thread, under the numbers of the system that the toolkit's documents and messages come from.
//
//     if (CreateFileW(path, GenericRead, ShareRead, 0, OpenExisting, 0) == InvalidHandle)
//         ... GetLastError() == ErrorFileNotFound ...
//
// A call of this folder that fails sets the number; one that succeeds leaves it alone unless it says otherwise.
//
// Threads: any; each thread has its own number.

#pragma once

#include <string>

namespace platform {

inline constexpr unsigned int ErrorSuccess = 0;
inline constexpr unsigned int ErrorInvalidFunction = 1;
inline constexpr unsigned int ErrorFileNotFound = 2; ///< The folder is there, the last component is not.
inline constexpr unsigned int ErrorPathNotFound = 3; ///< A folder on the way is missing or is no folder.
inline constexpr unsigned int ErrorTooManyOpenFiles = 4;
inline constexpr unsigned int ErrorAccessDenied = 5; ///< No permission, or a folder where a file is meant.
inline constexpr unsigned int ErrorInvalidHandle = 6;
inline constexpr unsigned int ErrorNotEnoughMemory = 8;
inline constexpr unsigned int ErrorBadFormat = 11;
inline constexpr unsigned int ErrorInvalidData = 13;   ///< A stored value is of another type or size.
inline constexpr unsigned int ErrorNotSameDevice = 17; ///< A move would cross file systems.
inline constexpr unsigned int ErrorNoMoreFiles = 18;   ///< A search has given all it has.
inline constexpr unsigned int ErrorWriteProtect = 19;  ///< The file system is mounted read-only.
inline constexpr unsigned int ErrorNotReady = 21;
inline constexpr unsigned int ErrorCrc = 23;              ///< The medium failed to read or write.
inline constexpr unsigned int ErrorSeek = 25;             ///< The file has no position: a pipe, a terminal.
inline constexpr unsigned int ErrorGenFailure = 31;       ///< Anything that has no better number.
inline constexpr unsigned int ErrorSharingViolation = 32; ///< Another open file does not share what was asked.
inline constexpr unsigned int ErrorLockViolation = 33;
inline constexpr unsigned int ErrorNotSupported = 50;
inline constexpr unsigned int ErrorBadNetPath = 53; ///< No mount leads to this server and share.
inline constexpr unsigned int ErrorUnexpectedNetwork = 59;
inline constexpr unsigned int ErrorBadNetName = 67;
inline constexpr unsigned int ErrorFileExists = 80; ///< CreateNew met a file.
inline constexpr unsigned int ErrorInvalidParameter = 87;
inline constexpr unsigned int ErrorBrokenPipe = 109;
inline constexpr unsigned int ErrorDiskFull = 112; ///< The disk or the user's quota is full.
inline constexpr unsigned int ErrorCallNotImplemented = 120;
inline constexpr unsigned int ErrorInsufficientBuffer = 122;
inline constexpr unsigned int ErrorInvalidName = 123; ///< No file can have this name; see native_path.h.
inline constexpr unsigned int ErrorModuleNotFound = 126;
inline constexpr unsigned int ErrorProcedureNotFound = 127;
inline constexpr unsigned int ErrorNegativeSeek = 131;
inline constexpr unsigned int ErrorDirectoryNotEmpty = 145;
inline constexpr unsigned int ErrorBadArguments = 160;
inline constexpr unsigned int ErrorBadPathname = 161;
inline constexpr unsigned int ErrorBusy = 170;
inline constexpr unsigned int ErrorAlreadyExists = 183;
inline constexpr unsigned int ErrorBadExeFormat = 193;
inline constexpr unsigned int ErrorFilenameTooLong = 206;
inline constexpr unsigned int ErrorFileTooLarge = 223;
inline constexpr unsigned int ErrorMoreData = 234;
inline constexpr unsigned int ErrorNoMoreItems = 259;      ///< An enumeration has given all it has.
inline constexpr unsigned int ErrorDirectory = 267;        ///< A file where a folder is meant.
inline constexpr unsigned int ErrorOperationAborted = 995; ///< CancelSynchronousIo, or another signal, ended the call.
inline constexpr unsigned int ErrorNoAccess = 998;
inline constexpr unsigned int ErrorRegistryCorrupt = 1015; ///< The store is damaged and could not be set aside.
inline constexpr unsigned int ErrorRegistryIoFailed = 1016;
inline constexpr unsigned int ErrorNotRegistryFile = 1017; ///< A database, but not a registry that this release reads.
inline constexpr unsigned int ErrorKeyDeleted = 1018;
inline constexpr unsigned int ErrorTooManyLinks = 1142;
inline constexpr unsigned int ErrorBadDevice = 1200;
inline constexpr unsigned int ErrorConnectionUnavailable = 1201; ///< A remembered drive whose mount is absent.
inline constexpr unsigned int ErrorDeviceAlreadyRemembered = 1202;
inline constexpr unsigned int ErrorNoNetOrBadPath = 1203;
inline constexpr unsigned int ErrorNoNetwork = 1222;
inline constexpr unsigned int ErrorCancelled = 1223;
inline constexpr unsigned int ErrorConnectionRefused = 1225;
inline constexpr unsigned int ErrorTimeout = 1460;
inline constexpr unsigned int ErrorCantResolveFilename = 1921; ///< Symbolic links lead in a circle.
inline constexpr unsigned int ErrorNotConnected = 2250;        ///< The drive is no network drive.

unsigned int GetLastError();
void SetLastError(unsigned int error);

/// Gives the number for an `errno` value; 0 for 0 and ErrorGenFailure for one that has none.
///
/// ENOENT gives ErrorFileNotFound and EEXIST ErrorAlreadyExists: the calls that know more about the path say
/// ErrorPathNotFound and ErrorFileExists themselves.
unsigned int ErrorFromErrno(int errnoValue);

/// Gives what an error number means, as a sentence in the thread's language. Empty for a number that has no text here.
std::u16string FormatMessageW(unsigned int error);

} // namespace platform
