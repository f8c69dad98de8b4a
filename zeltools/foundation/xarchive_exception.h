// SPDX-License-Identifier: MIT
// The exception of the binary archive.

#pragma once

#include "zeltools/foundation/xexception.h"

/// A failed read or write of an archive: why, and in which file.
class ZEL_API CXArchiveException : public CXException {
    ZEL_DECLARE_RUNTIME_CLASS(CXArchiveException)

public:
    enum ArchiveExceptionType : int {
        none = 0,
        genericException = 1, ///< A class operation in the wrong direction, or a class that is not serializable.
        archiveIsLoading = 2, ///< A write to an archive that loads.
        endOfFile = 3,
        archiveIsStoring = 4, ///< A read from an archive that stores.
        badIndex = 5,         ///< A tag out of range, or of the wrong kind.
        badClass = 6,         ///< An unknown class name, a null class, or one not derived from the class asked for.
        badSchema = 7,        ///< The stored schema is not the class's.
        bufferTooSmall = 8    ///< More was asked for at once than the archive's buffer holds.
    };

    CXArchiveException() = default;
    CXArchiveException(ArchiveExceptionType type, CXTString<char16_t> const& name) : cause(type), fileName(name) {}

    ArchiveExceptionType cause = none;
    CXTString<char16_t> fileName;

    /// One sentence with the cause and the file name, in the thread's language; a file without a name is called so.
    virtual CXTString<char16_t> GetErrorMessage() const;
};
