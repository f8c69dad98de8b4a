// SPDX-License-Identifier: MIT
#include "zeltools/platform/errors.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace platform {

namespace {

thread_local unsigned int lastError = ErrorSuccess;

struct ErrnoRow {
    int errnoValue;
    unsigned int error;
};

constexpr ErrnoRow errnoRows[] = {
    {0, ErrorSuccess},
    {EPERM, ErrorAccessDenied},
    {ENOENT, ErrorFileNotFound},
    {EINTR, ErrorOperationAborted},
    {EIO, ErrorCrc},
    {ENXIO, ErrorNotReady},
    {ENOEXEC, ErrorBadExeFormat},
    {EBADF, ErrorInvalidHandle},
    {EAGAIN, ErrorSharingViolation},
    {ENOMEM, ErrorNotEnoughMemory},
    {EACCES, ErrorAccessDenied},
    {EFAULT, ErrorNoAccess},
    {EBUSY, ErrorBusy},
    {EEXIST, ErrorAlreadyExists},
    {EXDEV, ErrorNotSameDevice},
    {ENODEV, ErrorNotReady},
    {ENOTDIR, ErrorPathNotFound},
    {EISDIR, ErrorAccessDenied},
    {EINVAL, ErrorInvalidParameter},
    {ENFILE, ErrorTooManyOpenFiles},
    {EMFILE, ErrorTooManyOpenFiles},
    {ETXTBSY, ErrorSharingViolation},
    {EFBIG, ErrorFileTooLarge},
    {ENOSPC, ErrorDiskFull},
    {ESPIPE, ErrorSeek},
    {EROFS, ErrorWriteProtect},
    {EMLINK, ErrorTooManyLinks},
    {EPIPE, ErrorBrokenPipe},
    {EDEADLK, ErrorLockViolation},
    {ENAMETOOLONG, ErrorFilenameTooLong},
    {ENOLCK, ErrorLockViolation},
    {ENOSYS, ErrorCallNotImplemented},
    {ENOTEMPTY, ErrorDirectoryNotEmpty},
    {ELOOP, ErrorCantResolveFilename},
    {EILSEQ, ErrorInvalidName},
    {EOVERFLOW, ErrorFileTooLarge},
    {EOPNOTSUPP, ErrorNotSupported},
    {ENETDOWN, ErrorBadNetPath},
    {ENETUNREACH, ErrorBadNetPath},
    {ECONNABORTED, ErrorUnexpectedNetwork},
    {ECONNRESET, ErrorUnexpectedNetwork},
    {ENOTCONN, ErrorUnexpectedNetwork}, // a FUSE mount whose server process has died
    {ETIMEDOUT, ErrorTimeout},
    {ECONNREFUSED, ErrorConnectionRefused},
    {EHOSTDOWN, ErrorBadNetPath},
    {EHOSTUNREACH, ErrorBadNetPath},
    {ESTALE, ErrorUnexpectedNetwork},
    {EREMOTEIO, ErrorUnexpectedNetwork},
    {EDQUOT, ErrorDiskFull},
    {ENOMEDIUM, ErrorNotReady},
    {ECANCELED, ErrorOperationAborted},
};

} // namespace

unsigned int GetLastError() {
    return lastError;
}

void SetLastError(unsigned int error) {
    lastError = error;
}

unsigned int ErrorFromErrno(int errnoValue) {
    auto const* row = std::find_if(std::begin(errnoRows), std::end(errnoRows),
                                   [&](ErrnoRow const& r) { return r.errnoValue == errnoValue; });
    return row == std::end(errnoRows) ? ErrorGenFailure : row->error;
}

} // namespace platform
