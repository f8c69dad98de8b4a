// SPDX-License-Identifier: MIT
// What is done with a file while it is open.

#include "zeltools/platform/blocking_calls.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/files.h"
#include "zeltools/platform/linux/file_handle.h"
#include "zeltools/platform/linux/file_times.h"
#include "zeltools/platform/linux/system_errors.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr std::size_t LargestTransfer = 0x7FFF'F000; ///< What the kernel takes in one call.

/// Refuses a handle that is none, or lacks a right, with the last error.
bool IsAllowed(HANDLE file, unsigned int right) {
    if (DescriptorOf(file) < 0) {
        return FailWith(ErrorInvalidHandle);
    }
    return right == 0 || (FileHandleBits(file) & right) != 0 || FailWith(ErrorAccessDenied);
}

/// Keeps a pipe whose reader has gone from ending the process: the signal is held back from this thread and taken away
/// if the write raised it.
class BrokenPipeGuard {
public:
    BrokenPipeGuard() {
        sigemptyset(&pipeSignal);
        sigaddset(&pipeSignal, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        wasPending = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &pipeSignal, &before);
    }
    ~BrokenPipeGuard() {
        timespec const now{};
        while (!wasPending && sigtimedwait(&pipeSignal, nullptr, &now) == -1 && errno == EINTR) {
        }
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    BrokenPipeGuard(BrokenPipeGuard const&) = delete;
    BrokenPipeGuard& operator=(BrokenPipeGuard const&) = delete;

private:
    sigset_t pipeSignal{};
    sigset_t before{};
    bool wasPending = false;
};

ssize_t WriteOnce(HANDLE file, char const* data, std::size_t size) {
    auto const write = [&] { return ::write(DescriptorOf(file), data, size); };
    if ((FileHandleBits(file) & HandleIsRegular) != 0) {
        return RetryInterrupted(write);
    }
    ssize_t result = 0;
    int cause = 0;
    {
        BrokenPipeGuard const guard; // whose end changes errno
        result = RetryInterrupted(write);
        cause = errno;
    }
    errno = cause;
    return result;
}

} // namespace

bool ReadFile(HANDLE file, void* data, std::size_t size, std::size_t& read) {
    read = 0;
    if (!IsAllowed(file, HandleReads)) {
        return false;
    }
    bool const isRegular = (FileHandleBits(file) & HandleIsRegular) != 0;
    while (read < size) {
        std::size_t const asked = std::min(size - read, LargestTransfer);
        ssize_t const got =
            RetryInterrupted([&] { return ::read(DescriptorOf(file), static_cast<char*>(data) + read, asked); });
        if (got < 0) {
            return FailWithErrno();
        }
        read += static_cast<std::size_t>(got);
        if (got == 0 || !isRegular) { // a pipe gives what it has
            break;
        }
    }
    return true;
}

bool WriteFile(HANDLE file, void const* data, std::size_t size, std::size_t& written) {
    written = 0;
    if (!IsAllowed(file, HandleWrites)) {
        return false;
    }
    while (written < size) {
        ssize_t const taken =
            WriteOnce(file, static_cast<char const*>(data) + written, std::min(size - written, LargestTransfer));
        if (taken < 0) {
            return FailWithErrno();
        }
        written += static_cast<std::size_t>(taken);
    }
    return true;
}

bool SetFilePointer(HANDLE file, long long distance, long long* position, SeekOrigin origin) {
    if (!IsAllowed(file, 0)) {
        return false;
    }
    if (origin > FileEnd) {
        return FailWith(ErrorInvalidParameter);
    }
    int const whence = origin == FileBegin ? SEEK_SET : origin == FileCurrent ? SEEK_CUR : SEEK_END;
    off_t const result = lseek(DescriptorOf(file), distance, whence);
    if (result < 0) {
        return errno == EINVAL && distance < 0 ? FailWith(ErrorNegativeSeek) : FailWithErrno();
    }
    if (position != nullptr) {
        *position = result;
    }
    return true;
}

bool GetFileSize(HANDLE file, unsigned long long& sizeBytes) {
    struct stat status {};
    if (!IsAllowed(file, 0)) {
        return false;
    }
    if (fstat(DescriptorOf(file), &status) != 0) {
        return FailWithErrno();
    }
    if (!S_ISREG(status.st_mode)) {
        return FailWith(ErrorInvalidFunction);
    }
    sizeBytes = static_cast<unsigned long long>(status.st_size);
    return true;
}

bool SetEndOfFile(HANDLE file) {
    if (!IsAllowed(file, HandleWrites)) {
        return false;
    }
    off_t const position = lseek(DescriptorOf(file), 0, SEEK_CUR);
    if (position < 0) {
        return FailWithErrno();
    }
    return RetryInterrupted([&] { return ftruncate(DescriptorOf(file), position); }) == 0 || FailWithErrno();
}

bool FlushFileBuffers(HANDLE file) {
    if (!IsAllowed(file, HandleWrites)) {
        return false;
    }
    // EINVAL: a pipe or a device that buffers nothing.
    return RetryInterrupted([&] { return fsync(DescriptorOf(file)); }) == 0 || errno == EINVAL || FailWithErrno();
}

bool SetFileTime(HANDLE file, FILETIME const* creation, FILETIME const* lastAccess, FILETIME const* lastWrite) {
    if (!IsAllowed(file, HandleWritesAttributes)) {
        return false;
    }
    if (creation != nullptr) {
        return FailWith(ErrorNotSupported);
    }
    timespec const unchanged{0, UTIME_OMIT};
    timespec const times[2] = {lastAccess == nullptr ? unchanged : ToTimeSpec(*lastAccess),
                               lastWrite == nullptr ? unchanged : ToTimeSpec(*lastWrite)};
    if (futimens(DescriptorOf(file), times) == 0) {
        return true;
    }
    if (errno != EBADF) {
        return FailWithErrno();
    }
    // The descriptor of a file whose content may not be read takes the change only by the file's name.
    std::string const name = "/proc/self/fd/" + std::to_string(DescriptorOf(file));
    return utimensat(AT_FDCWD, name.c_str(), times, 0) == 0 || FailWithErrno();
}

} // namespace platform
