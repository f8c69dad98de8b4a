// SPDX-License-Identifier: MIT
#include "zeltools/persistence/xfile.h"

#include "zeltools/foundation/characters.h"
#include "zeltools/persistence/file_failure_private.h"
#include "zeltools/persistence/file_hook_private.h"
#include "zeltools/persistence/framework_file.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/files.h"
#include "zeltools/platform/shell_path.h"

ZEL_IMPLEMENT_RUNTIME_CLASS(CXFile, CXObject, RuntimeClassNotSerializable)

namespace {

constexpr std::size_t PathBound = 260; ///< Characters with the terminator that the toolkit's documents give a path.

unsigned int AccessOf(unsigned int flags) {
    switch (flags & 3U) {
    case XFILE_OPEN_WRITE: return platform::GenericWrite;
    case XFILE_OPEN_READWRITE: return platform::GenericRead | platform::GenericWrite;
    default: return platform::GenericRead;
    }
}

unsigned int ShareOf(unsigned int flags) {
    constexpr unsigned int ShareMask = 0x70;
    switch (flags & ShareMask) {
    case XFILE_SHARE_DENY_WRITE: return platform::ShareRead;
    case XFILE_SHARE_DENY_READ: return platform::ShareWrite;
    case XFILE_SHARE_DENY_NONE: return platform::ShareRead | platform::ShareWrite;
    default: return 0;
    }
}

platform::Disposition DispositionOf(unsigned int flags) {
    if ((flags & XFILE_OPEN_CREATE) == 0) {
        return platform::OpenExisting;
    }
    return (flags & XFILE_OPEN_NO_TRUNCATE) != 0 ? platform::OpenAlways : platform::CreateAlways;
}

} // namespace

CFile::~CFile() = default;

CXFile::CXFile(bool throwing) : throwOnError(throwing) {}

CXFile::CXFile(void* givenHandle, bool throwing) : handle(givenHandle), throwOnError(throwing) {}

CXFile::CXFile(CFile* file, bool throwing) : throwOnError(throwing) {
    void* const foreign = file ? file->GetFileHandle() : nullptr;
    if (file) {
        path = file->GetFilePath();
    }
    void* const own = foreign ? platform::DuplicateFile(foreign) : platform::InvalidHandle;
    closeOnDelete = own != platform::InvalidHandle;
    handle = closeOnDelete ? own : foreign;
    throwOnError = throwing || !closeOnDelete;
    if (closeOnDelete) { // whose closing the hook will hear of
        detail::CallFileHook(handle);
    }
}

CXFile::CXFile(char16_t const* filePath, unsigned int flags) {
    CXFileException failure;
    if (!CXFile::Open(filePath, flags, &failure)) {
        detail::ThrowFile(failure.cause, failure.fileName);
    }
}

CXFile::~CXFile() {
    if (handle && closeOnDelete) {
        CXFile::Abort();
    }
}

void CXFile::Init(void* newHandle) {
    CXTString<char16_t> const kept = path;
    if (newHandle != handle) { // its own is not to be closed, but given away
        Abort();               // with the stream that a derived class has over it
    }
    path = kept;
    handle = newHandle;
    closeOnDelete = false;
    throwOnError = true;
}

void CXFile::Fail(CXFileException::FileExceptionType fallback, bool isSystemError) const {
    if (!throwOnError) {
        return;
    }
    if (!isSystemError) { // the last error is that of some earlier call
        detail::ThrowFile(fallback, path);
    }
    auto const cause = CXFileException::OsErrorToException(platform::GetLastError());
    detail::ThrowFile(cause == CXFileException::none ? fallback : cause, path);
}

bool CXFile::Release() {
    void* const before = handle;
    bool const isOwn = closeOnDelete;
    handle = nullptr;
    closeOnDelete = false;
    path.Empty();
    if (!before || !isOwn) {
        return true;
    }
    return platform::CloseFile(before);
}

bool CXFile::OpenHandle(char16_t const* filePath, unsigned int flags, CXFileException* error) {
    CXTString<char16_t> const wanted(filePath); // before Abort, since the caller may pass the object's own path
    CXFile::Abort();
    std::size_t const length = static_cast<std::size_t>(wanted.GetLength());
    auto cause = CXFileException::badPath;
    if (length > 0 && length < PathBound) {
        void* const opened = platform::CreateFileW(wanted, AccessOf(flags), ShareOf(flags), DispositionOf(flags),
                                                   platform::FileAttributeNormal);
        if (opened != platform::InvalidHandle) {
            path = wanted;
            handle = opened;
            closeOnDelete = true;
            return true;
        }
        cause = CXFileException::OsErrorToException(platform::GetLastError());
    }
    if (error) {
        error->cause = cause;
        error->fileName = wanted;
    }
    return false;
}

bool CXFile::Open(char16_t const* filePath, unsigned int flags, CXFileException* error) {
    if (!OpenHandle(filePath, flags, error)) {
        return false;
    }
    detail::CallFileHook(handle);
    return true;
}

void CXFile::Close() {
    CXTString<char16_t> const closedPath = path;
    void* const closed = closeOnDelete ? handle : nullptr;
    if (!Release()) {
        if (throwOnError) {
            auto const cause = CXFileException::OsErrorToException(platform::GetLastError());
            detail::ThrowFile(cause == CXFileException::none ? CXFileException::genericException : cause, closedPath);
        }
    } else if (closed) {
        detail::CallFileHook(closed);
    }
}

void CXFile::Abort() {
    void* const closed = closeOnDelete ? handle : nullptr;
    if (Release() && closed) {
        detail::CallFileHook(closed);
    }
}

CXTString<char16_t> CXFile::GetFileName() const {
    return platform::PathFindFileNameW(path);
}

CXTString<char16_t> CXFile::GetFilePath() const {
    return path;
}

void CXFile::SetFilePath(char16_t const* newPath) {
    path = newPath;
}

unsigned long long CXFile::GetPosition() const {
    long long position = 0;
    if (handle && platform::SetFilePointer(handle, 0, &position, platform::FileCurrent)) {
        return static_cast<unsigned long long>(position);
    }
    Fail(CXFileException::invalidFile, handle != nullptr);
    return BadPosition;
}

unsigned long long CXFile::Seek(long long offset, SeekPosition from) {
    long long position = 0;
    auto const origin = static_cast<platform::SeekOrigin>(from);
    return handle && platform::SetFilePointer(handle, offset, &position, origin)
               ? static_cast<unsigned long long>(position)
               : BadPosition;
}

bool CXFile::SetLength(unsigned long long newLength) {
    if (handle && platform::SetFilePointer(handle, static_cast<long long>(newLength), nullptr, platform::FileBegin) &&
        platform::SetEndOfFile(handle)) {
        return true;
    }
    Fail(CXFileException::diskFull, handle != nullptr);
    return false;
}

unsigned long long CXFile::GetLength() const {
    unsigned long long length = 0;
    if (handle && platform::GetFileSize(handle, length)) {
        return length;
    }
    Fail(CXFileException::accessDenied, handle != nullptr);
    return 0;
}

unsigned long long CXFile::Read(void* data, unsigned long long count) {
    auto const size = static_cast<unsigned int>(count);
    if (size == 0) {
        return 0;
    }
    bool const isPossible = handle && data;
    std::size_t read = 0;
    if (isPossible && platform::ReadFile(handle, data, size, read)) {
        return read;
    }
    Fail(CXFileException::genericException, isPossible);
    return 0;
}

void CXFile::Write(void const* data, unsigned long long count) {
    auto const size = static_cast<unsigned int>(count);
    bool const isPossible = handle && data;
    std::size_t written = 0;
    if (isPossible && platform::WriteFile(handle, data, size, written)) {
        return;
    }
    if (written > 0 && platform::GetLastError() == platform::ErrorDiskFull) { // the disk took a part
        if (throwOnError) {
            detail::ThrowFile(CXFileException::diskFull, CXTString<char16_t>(u'\xFFFF', 1), path);
        }
        return;
    }
    Fail(CXFileException::genericException, isPossible);
}

void CXFile::Flush() {
    if (handle && !platform::FlushFileBuffers(handle)) {
        Fail(CXFileException::diskFull);
    }
}

unsigned long long CXFile::BufferCommand(unsigned int, unsigned long long, unsigned char**, unsigned char**) {
    return 0;
}
