// SPDX-License-Identifier: MIT
#include "zeltools/platform/linux/rename.h"

#include "zeltools/platform/blocking_calls.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

bool IsUnsupported(int error) {
    return error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
}

/// Takes the new name with an empty file or folder, which the rename then puts aside in one step.
bool RenameOverPlaceholder(std::string const& from, std::string const& to, bool isDirectory) {
    if (isDirectory) {
        if (mkdir(to.c_str(), 0700) != 0) {
            return false;
        }
    } else {
        int const reserved = open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (reserved < 0) {
            return false;
        }
        close(reserved);
    }
    if (rename(from.c_str(), to.c_str()) == 0) {
        return true;
    }
    int const cause = errno;
    isDirectory ? rmdir(to.c_str()) : unlink(to.c_str());
    errno = cause;
    return false;
}

} // namespace

bool RenameWithoutReplacing(std::string const& from, std::string const& to, bool isDirectory) {
    if (RetryInterrupted([&] { return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE); }) ==
        0) {
        return true;
    }
    if (!IsUnsupported(errno)) {
        return false;
    }
    if (isDirectory) {
        struct stat status {};
        std::string const below = from + '/';
        if (to.compare(0, below.size(), below) == 0) { // a folder into itself: no matter of the file system
            errno = EINVAL;
            return false;
        }
        return lstat(from.c_str(), &status) == 0 && RenameOverPlaceholder(from, to, true);
    }
    if (linkat(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), 0) == 0) {
        if (unlink(from.c_str()) == 0) {
            return true;
        }
        int const cause = errno;
        unlink(to.c_str());
        errno = cause;
        return false;
    }
    bool const hasNoLinks = IsUnsupported(errno) || errno == EPERM || errno == EMLINK;
    return hasNoLinks && RenameOverPlaceholder(from, to, false);
}

std::string FolderOf(std::string const& path) {
    std::size_t const lastOfName = path.find_last_not_of('/');
    std::size_t const slash = lastOfName == std::string::npos ? std::string::npos : path.find_last_of('/', lastOfName);
    return slash == std::string::npos ? std::string{} : path.substr(0, slash + 1);
}

void FlushFolderOf(std::string const& path) {
    std::string const folder = FolderOf(path);
    int const descriptor = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        fsync(descriptor);
        close(descriptor);
    }
}

} // namespace platform
