// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xfile_exception.h"

#include "zeltools/foundation/exception_text_private.h"
#include "zeltools/foundation/thread_exceptions.h"
#include "zeltools/platform/errors.h"

ZEL_IMPLEMENT_RUNTIME_CLASS(CXFileException, CXException, 1 | RuntimeClassNotSerializable)

namespace {

/// The text of cause 0; the others follow.
constexpr unsigned int FirstFileText = 61856;

void ThrowOrStore(CXFileException::FileExceptionType cause, CXTString<char16_t> const& name, CXFileException* target) {
    if (target) {
        target->cause = cause;
        target->fileName = name;
        return;
    }
    if (cause == CXFileException::none)
        return;
    auto* const exception = new CXFileException(cause, name);
    XSetThreadException(exception);
    throw exception;
}

} // namespace

CXTString<char16_t> CXFileException::GetErrorMessage() const {
    if (cause == none)
        return {};
    return detail::FormatFileText(FirstFileText + static_cast<unsigned int>(cause), fileName);
}

CXFileException::FileExceptionType CXFileException::ErrnoToException(int errnoValue) {
    // The numbers of the C library that files were first written with; the ones named here are Linux's too.
    switch (errnoValue) {
    case 1:  // EPERM
    case 13: // EACCES
        return accessDenied;
    case 2:  // ENOENT
    case 23: // ENFILE
        return fileNotFound;
    case 5:  // EIO
    case 22: // EINVAL
        return hardIO;
    case 9: // EBADF
        return invalidFile;
    case 24: // EMFILE
        return tooManyOpenFiles;
    case 28: // ENOSPC
        return diskFull;
    default: return genericException;
    }
}

// clang-format off
CXFileException::FileExceptionType CXFileException::OsErrorToException(unsigned int error) {
    switch (error) {
    case 0:
        return none;
    case 2: case 6: case 18: case 107:
        return fileNotFound;
    case 3: case 15: case 17: case 34: case 52: case 53: case 55: case 67: case 70: case 85: case 111: case 123:
    case 124: case 125: case 144: case 154: case 161: case 206: case 208: case 267:
        return badPath;
    case 4: case 36: case 68: case 113:
        return tooManyOpenFiles;
    case 5: case 12: case 19: case 29: case 54: case 58: case 64: case 65: case 71: case 80: case 82: case 86:
    case 170: case 183: case 999:
        return accessDenied;
    case 11: case 26: case 60: case 66: case 114: case 182: case 191: case 193:
        return invalidFile;
    case 16: case 145:
        return removeCurrentDir;
    case 62:
        return directoryFull;
    case 24: case 25: case 27: case 30: case 131: case 132:
        return badSeek;
    case 20: case 21: case 22: case 23: case 57: case 59: case 88: case 117: case 995: case 996: case 997:
        return hardIO;
    case 32:
        return sharingViolation;
    case 33: case 108: case 167:
        return lockViolation;
    case 39: case 112:
        return diskFull;
    case 38:
        return endOfFile;
    default:
        return genericException;
    }
}
// clang-format on

void CXFileException::ThrowOsError(FileExceptionType type, CXTString<char16_t> const& name, CXFileException* target) {
    FileExceptionType const mapped = OsErrorToException(platform::GetLastError());
    ThrowOrStore(mapped == none ? type : mapped, name, target);
}

void CXFileException::ThrowErrno(FileExceptionType type, int errnoValue, CXTString<char16_t> const& name,
                                 CXFileException* target) {
    ThrowOrStore(errnoValue == 0 ? type : ErrnoToException(errnoValue), name, target);
}
