// SPDX-License-Identifier: MIT
#include "zeltools/platform/blocking_calls.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/file_names.h"
#include "zeltools/platform/linux/file_handle.h"
#include "zeltools/platform/linux/rename.h"
#include "zeltools/platform/linux/share_modes.h"
#include "zeltools/platform/linux/system_errors.h"
#include "zeltools/platform/native_path.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace platform {

namespace {

constexpr mode_t PermissionBits = 0777;

/// Closes a descriptor, and deletes the file's name as well unless it was kept.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string const& folder) : name(folder + ".zel-XXXXXX") {
        descriptor = mkostemp(name.data(), O_CLOEXEC);
    }
    ~TemporaryFile() {
        if (descriptor >= 0) {
            close(descriptor);
            if (!isKept) {
                unlink(name.c_str());
            }
        }
    }
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;

    void Keep() { isKept = true; }

    std::string name;
    int descriptor = -1;

private:
    bool isKept = false;
};

struct FileCloser {
    using pointer = HANDLE;
    void operator()(HANDLE file) const {
        if (file != InvalidHandle) { // its close would replace the error of the open
            CloseFile(file);
        }
    }
};
using OpenFile = std::unique_ptr<void, FileCloser>;

bool IsSameFile(struct stat const& a, struct stat const& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

bool WriteAll(int descriptor, char const* data, std::size_t size) {
    while (size > 0) {
        ssize_t const taken = RetryInterrupted([&] { return write(descriptor, data, size); });
        if (taken < 0) {
            return false;
        }
        data += taken;
        size -= static_cast<std::size_t>(taken);
    }
    return true;
}

/// Copies from both files' positions to the end. False with errno; ECANCELED when the call was cancelled.
bool CopyContent(int from, int to) {
    constexpr std::size_t Step = std::size_t{16} << 20; // small enough for a cancellation to be noticed
    bool isFirst = true;
    for (;; isFirst = false) {
        if (IsCallCancelled()) {
            errno = ECANCELED;
            return false;
        }
        ssize_t const copied = copy_file_range(from, nullptr, to, nullptr, Step, 0);
        if (copied == 0 && !isFirst) {
            return true;
        }
        if (copied <= 0) { // not between these file systems, or a file of the kernel's that tells no size
            break;
        }
    }
    std::vector<char> block(std::size_t{1} << 18);
    for (;;) {
        ssize_t const got = RetryInterrupted([&] { return read(from, block.data(), block.size()); });
        if (got < 0 || (got > 0 && !WriteAll(to, block.data(), static_cast<std::size_t>(got)))) {
            return false;
        }
        if (got == 0) {
            return true;
        }
        if (IsCallCancelled()) {
            errno = ECANCELED;
            return false;
        }
    }
}

/// Gives the copy what it takes over from its source, and puts it on the disk.
bool FinishContent(int copy, struct stat const& source) {
    timespec const times[2] = {source.st_atim, source.st_mtim};
    // A file system without permissions or times of its own (a memory card) refuses; the content matters more.
    if (fchmod(copy, source.st_mode & PermissionBits) != 0 || futimens(copy, times) != 0) {
        if (errno != EPERM && errno != EOPNOTSUPP && errno != EROFS) {
            return false;
        }
    }
    return RetryInterrupted([&] { return fsync(copy); }) == 0;
}

/// Looks whether an existing file may be replaced by a copy, and follows it when it is a link.
bool PrepareTarget(struct stat const& source, std::string& to) {
    struct stat target {};
    if (stat(to.c_str(), &target) != 0) {
        return errno == ENOENT || FailWithErrno(to);
    }
    if (!S_ISREG(target.st_mode)) {
        return FailWith(ErrorAccessDenied);
    }
    if (IsSameFile(source, target) || IsUseDenied(to, ShareWrite)) {
        return FailWith(ErrorSharingViolation);
    }
    if (faccessat(AT_FDCWD, to.c_str(), W_OK, AT_EACCESS) != 0) {
        return FailWithErrno(to);
    }
    std::unique_ptr<char, void (*)(void*)> const real{realpath(to.c_str(), nullptr), std::free};
    if (real != nullptr) {
        to = real.get();
    }
    return true;
}

bool CopyNativeFile(std::string const& from, std::string to, bool failIfExists) {
    OpenFile const source{
        OpenNativeFile(from, GenericRead, ShareRead | ShareWrite | ShareDelete, OpenExisting, 0, false)};
    if (source.get() == InvalidHandle) {
        return false;
    }
    struct stat status {};
    int const sourceDescriptor = DescriptorOf(source.get());
    if (fstat(sourceDescriptor, &status) != 0) {
        return FailWithErrno();
    }
    if (!S_ISREG(status.st_mode)) {
        return FailWith(ErrorAccessDenied);
    }
    struct stat existing {};
    if (failIfExists && lstat(to.c_str(), &existing) == 0) { // spares the copying; the last step decides
        return FailWith(ErrorFileExists);
    }
    if (!failIfExists && !PrepareTarget(status, to)) {
        return false;
    }
    posix_fadvise(sourceDescriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
    TemporaryFile copy{FolderOf(to)};
    if (copy.descriptor < 0) {
        return errno == ENOENT ? FailWith(ErrorPathNotFound) : FailWithErrno();
    }
    if (!CopyContent(sourceDescriptor, copy.descriptor) || !FinishContent(copy.descriptor, status)) {
        return FailWithErrno();
    }
    bool const isInPlace =
        failIfExists ? RenameWithoutReplacing(copy.name, to, false) : rename(copy.name.c_str(), to.c_str()) == 0;
    if (!isInPlace) {
        return errno == EEXIST ? FailWith(ErrorFileExists) : FailWithErrno();
    }
    copy.Keep();
    FlushFolderOf(to);
    return true;
}

/// Whether two paths are the same entry of the same folder.
bool IsSameEntry(std::string const& a, std::string const& b) {
    std::string const folderA = FolderOf(a);
    std::string const folderB = FolderOf(b);
    struct stat statusA {};
    struct stat statusB {};
    return a.substr(folderA.size()) == b.substr(folderB.size()) &&
           stat(folderA.empty() ? "." : folderA.c_str(), &statusA) == 0 &&
           stat(folderB.empty() ? "." : folderB.c_str(), &statusB) == 0 && IsSameFile(statusA, statusB);
}

bool MoveSymbolicLink(std::string const& from, std::string const& to, bool mayReplace) {
    std::array<char, 4096> target{}; // PATH_MAX bounds what a link can hold
    ssize_t const length = readlink(from.c_str(), target.data(), target.size() - 1);
    if (length < 0) {
        return FailWithErrno(from);
    }
    if (mayReplace && unlink(to.c_str()) != 0 && errno != ENOENT) {
        return FailWithErrno(to);
    }
    if (symlink(target.data(), to.c_str()) != 0) {
        return FailWithErrno(to);
    }
    unlink(from.c_str());
    return true;
}

bool MoveToOtherFileSystem(std::string const& from, std::string const& to, struct stat const& status, bool mayReplace) {
    if (S_ISLNK(status.st_mode)) {
        return MoveSymbolicLink(from, to, mayReplace);
    }
    if (!S_ISREG(status.st_mode)) {
        return FailWith(ErrorNotSameDevice);
    }
    if (!CopyNativeFile(from, to, !mayReplace)) {
        return GetLastError() == ErrorFileExists ? FailWith(ErrorAlreadyExists) : false;
    }
    unlink(from.c_str()); // the original stays where it may not be deleted: the move is done all the same
    return true;
}

/// On a path without case, a name that differs in case only leads to the file itself: then the new spelling counts.
void KeepNewSpelling(std::u16string_view to, std::string const& from, std::string& native) {
    while (!to.empty() && (to.back() == u'\\' || to.back() == u'/')) {
        to.remove_suffix(1);
    }
    std::string name;
    std::size_t const start = to.find_last_of(u"\\/:");
    if (native == from && ToNativeName(to.substr(start == std::u16string_view::npos ? 0 : start + 1), name)) {
        native = FolderOf(native) + name;
    }
}

void RemoveTrailingSlashes(std::string& path) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
}

} // namespace

bool CopyFileW(char16_t const* from, char16_t const* to, bool failIfExists) {
    std::string nativeFrom;
    std::string nativeTo;
    return ToNativePath(from, nativeFrom) && ToNativePath(to, nativeTo) &&
           CopyNativeFile(nativeFrom, std::move(nativeTo), failIfExists);
}

bool CopyPermissions(char16_t const* fromPath, char16_t const* toPath) {
    std::string from;
    std::string to;
    struct stat status {};
    if (!ToNativePath(fromPath, from) || !ToNativePath(toPath, to)) {
        return false;
    }
    if (RetryInterrupted([&] { return stat(from.c_str(), &status); }) != 0) {
        return FailWithErrno(from);
    }
    return RetryInterrupted([&] { return chmod(to.c_str(), status.st_mode & PermissionBits); }) == 0 ||
           FailWithErrno(to);
}

bool MoveFileExW(char16_t const* fromPath, char16_t const* toPath, unsigned int flags) {
    std::string from;
    std::string to;
    struct stat status {};
    if (!ToNativePath(fromPath, from) || !ToNativePath(toPath, to)) {
        return false;
    }
    if (RetryInterrupted([&] { return lstat(from.c_str(), &status); }) != 0) {
        return FailWithErrno(from);
    }
    bool const isDirectory = S_ISDIR(status.st_mode);
    if (isDirectory) {
        RemoveTrailingSlashes(from);
        RemoveTrailingSlashes(to);
    }
    KeepNewSpelling(toPath, from, to);
    if (from == to) {
        return true;
    }
    if (S_ISREG(status.st_mode) && IsUseDenied(from, ShareDelete)) {
        return FailWith(ErrorSharingViolation);
    }
    bool const mayReplace = (flags & MoveReplaceExisting) != 0;
    bool isMoved = false;
    if (mayReplace && !isDirectory) {
        // Two names of one file: the system's rename would leave both.
        struct stat target {};
        bool const isSecondName = status.st_nlink > 1 && lstat(to.c_str(), &target) == 0 &&
                                  IsSameFile(status, target) && !IsSameEntry(from, to);
        isMoved = RetryInterrupted([&] { return rename(from.c_str(), to.c_str()); }) == 0;
        if (isMoved && isSecondName) {
            unlink(from.c_str());
        }
    } else {
        isMoved = RenameWithoutReplacing(from, to, isDirectory);
    }
    if (isMoved) {
        return true;
    }
    if (errno == EXDEV && (flags & MoveCopyAllowed) != 0) {
        return MoveToOtherFileSystem(from, to, status, mayReplace);
    }
    if (errno == EEXIST && mayReplace) {
        return FailWith(ErrorAccessDenied);
    }
    return errno == ENOENT ? FailWith(ErrorPathNotFound) : FailWithErrno();
}

bool MoveFileW(char16_t const* from, char16_t const* to) {
    return MoveFileExW(from, to, MoveCopyAllowed);
}

} // namespace platform
