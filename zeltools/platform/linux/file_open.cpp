// SPDX-License-Identifier: MIT
// Opening, closing and duplicating files.

#include "zeltools/platform/blocking_calls.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/file_names.h"
#include "zeltools/platform/files.h"
#include "zeltools/platform/linux/file_handle.h"
#include "zeltools/platform/linux/share_modes.h"
#include "zeltools/platform/linux/system_errors.h"
#include "zeltools/platform/native_path.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr unsigned int GenericAll = 0x10000000;

struct Opened {
    int descriptor = -1;
    bool isNew = false;
};

int OpenOrRetry(std::string const& native, int flags, mode_t mode) {
    return RetryInterrupted([&] { return open(native.c_str(), flags, mode); });
}

/// Opens or creates, and knows which of the two it was. False with errno.
bool OpenByDisposition(std::string const& native, int flags, mode_t mode, unsigned int disposition, Opened& opened) {
    bool const mayCreate = disposition != OpenExisting && disposition != TruncateExisting;
    bool const mayOpen = disposition != CreateNew;
    // A file may come or go between the two attempts, over and over if somebody means it.
    constexpr int Rounds = 16;
    for (int round = 0; round < Rounds; ++round) {
        if (mayOpen) {
            opened.descriptor = OpenOrRetry(native, flags, mode);
            opened.isNew = false;
            if (opened.descriptor >= 0 || errno != ENOENT || !mayCreate) {
                break;
            }
        }
        opened.descriptor = OpenOrRetry(native, flags | O_CREAT | O_EXCL, mode);
        opened.isNew = true;
        if (opened.descriptor >= 0 || errno != EEXIST || !mayOpen) {
            break;
        }
        struct stat target {};
        if (stat(native.c_str(), &target) != 0 && errno == ENOENT) { // a link to a file that is to be created
            opened.descriptor = OpenOrRetry(native, flags | O_CREAT, mode);
            break;
        }
    }
    return opened.descriptor >= 0;
}

HANDLE CloseAndFail(int descriptor, unsigned int error) {
    close(descriptor);
    SetLastError(error);
    return InvalidHandle;
}

void AdviseAccess(int descriptor, unsigned int flags) {
    if ((flags & FileFlagSequentialScan) != 0) {
        posix_fadvise(descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
    } else if ((flags & FileFlagRandomAccess) != 0) {
        posix_fadvise(descriptor, 0, 0, POSIX_FADV_RANDOM);
    }
}

/// Deletes the name that an open file has now, unless another file has taken it.
void DeleteNameOf(int descriptor) {
    std::array<char, 4096> name{}; // PATH_MAX: the kernel gives no more
    std::string const link = "/proc/self/fd/" + std::to_string(descriptor);
    ssize_t const length = readlink(link.c_str(), name.data(), name.size() - 1);
    struct stat ofFile {};
    struct stat ofName {};
    if (length > 0 && fstat(descriptor, &ofFile) == 0 && lstat(name.data(), &ofName) == 0 &&
        ofFile.st_dev == ofName.st_dev && ofFile.st_ino == ofName.st_ino) {
        unlink(name.data());
    }
}

} // namespace

HANDLE OpenNativeFile(std::string const& native, unsigned int access, unsigned int share, unsigned int disposition,
                      unsigned int flags, bool mayBlock) {
    if (disposition < CreateNew || disposition > TruncateExisting) {
        SetLastError(ErrorInvalidParameter);
        return InvalidHandle;
    }
    bool const deletesOnClose = (flags & FileFlagDeleteOnClose) != 0;
    bool const reads = (access & (GenericRead | GenericAll)) != 0;
    bool const writes = (access & (GenericWrite | GenericAll)) != 0;
    bool const truncates = disposition == CreateAlways || disposition == TruncateExisting;
    bool const needsWriting = writes || truncates;
    int openFlags = O_CLOEXEC | O_NOCTTY;
    openFlags |= !needsWriting ? O_RDONLY : reads ? O_RDWR : O_WRONLY;
    openFlags |= (flags & FileFlagWriteThrough) != 0 ? O_DSYNC : 0;
    openFlags |= mayBlock && (reads || writes) ? 0 : O_NONBLOCK;
    mode_t const mode = (flags & FileAttributeReadOnly) != 0 ? 0444 : 0666;

    Opened opened;
    bool isOpen = OpenByDisposition(native, openFlags, mode, disposition, opened);
    if (!isOpen && errno == EACCES && !reads && !needsWriting) { // its attributes may be had without its content
        isOpen = OpenByDisposition(native, O_PATH | O_CLOEXEC, mode, disposition, opened);
    }
    if (!isOpen) {
        if (errno == EEXIST) {
            SetLastError(ErrorFileExists);
        } else {
            FailWithErrno(native);
        }
        return InvalidHandle;
    }
    int const descriptor = opened.descriptor;
    struct stat status {};
    if (fstat(descriptor, &status) != 0) {
        return CloseAndFail(descriptor, ErrorFromErrno(errno));
    }
    if (S_ISDIR(status.st_mode) && (flags & FileFlagBackupSemantics) == 0) {
        return CloseAndFail(descriptor, ErrorAccessDenied);
    }
    bool const isRegular = S_ISREG(status.st_mode);
    bool const deletes = deletesOnClose || (access & (AccessDelete | GenericAll)) != 0;
    unsigned int const uses = (reads ? ShareRead : 0U) | (writes ? ShareWrite : 0U) | (deletes ? ShareDelete : 0U);
    // Who only looks at attributes stands in nobody's way.
    if (isRegular && (uses != 0 || truncates) &&
        !TakeShareModes(descriptor, uses | (truncates ? ShareWrite : 0U), share)) {
        return CloseAndFail(descriptor, ErrorSharingViolation);
    }
    if (isRegular && truncates && !opened.isNew && status.st_size > 0 &&
        RetryInterrupted([&] { return ftruncate(descriptor, 0); }) != 0) {
        return CloseAndFail(descriptor, ErrorFromErrno(errno));
    }
    AdviseAccess(descriptor, flags);
    if (disposition == CreateAlways || disposition == OpenAlways) {
        SetLastError(opened.isNew ? ErrorSuccess : ErrorAlreadyExists);
    }
    bool const writesAttributes = writes || (access & AccessWriteAttributes) != 0;
    return MakeFileHandle(descriptor, (reads ? HandleReads : 0U) | (writes ? HandleWrites : 0U) |
                                          (writesAttributes ? HandleWritesAttributes : 0U) |
                                          (deletesOnClose ? HandleDeletesOnClose : 0U) |
                                          (isRegular ? HandleIsRegular : 0U));
}

HANDLE CreateFileW(char16_t const* path, unsigned int access, unsigned int share, unsigned int disposition,
                   unsigned int flags) {
    std::string native;
    return ToNativePath(path, native) ? OpenNativeFile(native, access, share, disposition, flags, true) : InvalidHandle;
}

unsigned int NtCreateFile(char16_t const* path, unsigned int access, unsigned int share, bool create) {
    unsigned int const before = GetLastError();
    std::string native;
    unsigned int error = ErrorSuccess;
    // A pipe without another end must not keep the caller waiting for an answer.
    HANDLE const file = ToNativePath(path, native)
                            ? OpenNativeFile(native, access, share, create ? CreateNew : OpenExisting,
                                             create ? FileFlagDeleteOnClose : 0, false)
                            : InvalidHandle;
    if (file == InvalidHandle) {
        error = GetLastError();
    } else {
        CloseFile(file);
    }
    SetLastError(before);
    return error;
}

bool CloseFile(HANDLE file) {
    int const descriptor = DescriptorOf(file);
    if (descriptor < 0) {
        return FailWith(ErrorInvalidHandle);
    }
    if ((FileHandleBits(file) & HandleDeletesOnClose) != 0) {
        DeleteNameOf(descriptor);
    }
    // Closed in any case: a second attempt could hit a descriptor that another thread has opened meanwhile.
    return close(descriptor) == 0 || errno == EINTR || FailWithErrno();
}

HANDLE DuplicateFile(HANDLE file) {
    int const descriptor = DescriptorOf(file);
    int const duplicate = descriptor < 0 ? -1 : fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    if (duplicate < 0) {
        SetLastError(descriptor < 0 ? ErrorInvalidHandle : ErrorFromErrno(errno));
        return InvalidHandle;
    }
    return MakeFileHandle(duplicate, FileHandleBits(file) & ~static_cast<unsigned int>(HandleDeletesOnClose));
}

int GetFileDescriptor(HANDLE file) {
    return DescriptorOf(file);
}

HANDLE HandleFromFileDescriptor(int descriptor) {
    int const flags = fcntl(descriptor, F_GETFL);
    struct stat status {};
    if (flags < 0 || fstat(descriptor, &status) != 0) {
        SetLastError(ErrorInvalidHandle);
        return InvalidHandle;
    }
    int const mode = flags & O_ACCMODE;
    return MakeFileHandle(descriptor, (mode != O_WRONLY ? HandleReads : 0U) |
                                          (mode != O_RDONLY ? HandleWrites | HandleWritesAttributes : 0U) |
                                          (S_ISREG(status.st_mode) ? HandleIsRegular : 0U));
}

} // namespace platform
