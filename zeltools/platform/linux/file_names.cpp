// SPDX-License-Identifier: MIT
// Deleting names and making folders.

#include "zeltools/platform/file_names.h"

#include "zeltools/platform/blocking_calls.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/linux/share_modes.h"
#include "zeltools/platform/linux/system_errors.h"
#include "zeltools/platform/native_path.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

bool DeleteFileW(char16_t const* path) {
    std::string native;
    struct stat status {};
    if (!ToNativePath(path, native)) {
        return false;
    }
    if (RetryInterrupted([&] { return lstat(native.c_str(), &status); }) != 0) {
        return FailWithErrno(native);
    }
    if (S_ISDIR(status.st_mode)) {
        return FailWith(ErrorAccessDenied);
    }
    if (S_ISREG(status.st_mode) && IsUseDenied(native, ShareDelete)) {
        return FailWith(ErrorSharingViolation);
    }
    return RetryInterrupted([&] { return unlink(native.c_str()); }) == 0 || FailWithErrno(native);
}

bool CreateDirectoryW(char16_t const* path) {
    std::string native;
    if (!ToNativePath(path, native)) {
        return false;
    }
    if (RetryInterrupted([&] { return mkdir(native.c_str(), 0777); }) == 0) {
        return true;
    }
    return errno == ENOENT ? FailWith(ErrorPathNotFound) : FailWithErrno();
}

bool RemoveDirectoryW(char16_t const* path) {
    std::string native;
    struct stat status {};
    if (!ToNativePath(path, native)) {
        return false;
    }
    while (native.size() > 1 && native.back() == '/') { // with it, a link would mean what it leads to
        native.pop_back();
    }
    if (RetryInterrupted([&] { return lstat(native.c_str(), &status); }) != 0) {
        return FailWithErrno(native);
    }
    if (S_ISLNK(status.st_mode)) {
        struct stat target {};
        if (stat(native.c_str(), &target) == 0 && S_ISDIR(target.st_mode)) {
            return RetryInterrupted([&] { return unlink(native.c_str()); }) == 0 || FailWithErrno(native);
        }
    }
    if (!S_ISDIR(status.st_mode)) {
        return FailWith(ErrorDirectory);
    }
    if (RetryInterrupted([&] { return rmdir(native.c_str()); }) == 0) {
        return true;
    }
    return errno == EEXIST ? FailWith(ErrorDirectoryNotEmpty) : FailWithErrno(native);
}

} // namespace platform
