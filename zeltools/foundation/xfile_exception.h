// SPDX-License-Identifier: MIT
// The exception of file operations, and how the system's error numbers become its causes.
//
//     try {
//         file.Open(...);
//     } catch (CXFileException* e) {
//         e->cause;               // CXFileException::accessDenied
//         e->GetErrorMessage();   // "Access to C:\a.png was denied."
//         e->Delete();
//     }

#pragma once

#include "zeltools/foundation/xexception.h"

/// A failed file operation: why, and on which file.
class ZEL_API CXFileException : public CXException {
    ZEL_DECLARE_RUNTIME_CLASS(CXFileException)

public:
    enum FileExceptionType : int {
        none = 0,
        genericException = 1, ///< A failure that has no better name.
        fileNotFound = 2,
        badPath = 3, ///< A folder of the path is missing, or the name is not valid.
        tooManyOpenFiles = 4,
        accessDenied = 5,
        invalidFile = 6, ///< The handle is not of a file, or the file is not of the kind.
        removeCurrentDir = 7,
        directoryFull = 8,
        badSeek = 9,
        hardIO = 10, ///< The device failed.
        sharingViolation = 11,
        lockViolation = 12,
        diskFull = 13,
        endOfFile = 14
    };

    CXFileException() = default;
    CXFileException(FileExceptionType type, CXTString<char16_t> const& name) : cause(type), fileName(name) {}
    /// The same with a text for the base's message.
    CXFileException(FileExceptionType type, CXTString<char16_t> const& name, CXTString<char16_t> const& text)
        : CXException(text), cause(type), fileName(name) {}

    FileExceptionType cause = none;
    CXTString<char16_t> fileName;

    /// One sentence with the cause and the file name, in the thread's language; a file without a name is called so.
    /// Empty for cause none.
    virtual CXTString<char16_t> GetErrorMessage() const;

    /// The cause for an errno value; genericException for one without, 0 included.
    static FileExceptionType ErrnoToException(int errnoValue);

    /// The cause for a GetLastError number; genericException for one without, none for 0.
    static FileExceptionType OsErrorToException(unsigned int error);

    /// Reports the calling thread's last system error.
    ///
    /// @param type    The cause where the system has no error.
    /// @param target  Receives cause and name, and nothing is thrown. Null: a new CXFileException is entered in the
    ///                thread's table and thrown, unless the cause is none.
    static void ThrowOsError(FileExceptionType type, CXTString<char16_t> const& name,
                             CXFileException* target = nullptr);

    /// The same for an errno value; 0 takes `type`.
    static void ThrowErrno(FileExceptionType type, int errnoValue, CXTString<char16_t> const& name,
                           CXFileException* target = nullptr);
};
