// SPDX-License-Identifier: MIT
#include "zeltools/persistence/xstdio_file.h"

#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/foundation/string_conversion.h"
#include "zeltools/persistence/file_failure_private.h"
#include "zeltools/persistence/file_hook_private.h"
#include "zeltools/platform/streams.h"

#include <cerrno>
#include <climits>
#include <cstdint>
#include <string>
#include <utility>

ZEL_IMPLEMENT_RUNTIME_CLASS(CXStdioFile, CXFile, RuntimeClassNotSerializable)

namespace {

std::string ModeOf(unsigned int flags) {
    bool const writesOnly = (flags & XFILE_OPEN_WRITE) != 0;
    bool const creates = (flags & XFILE_OPEN_CREATE) != 0;
    char letter = 'r';
    if (creates) {
        letter = (flags & XFILE_OPEN_NO_TRUNCATE) != 0 ? 'a' : 'w';
    } else if (writesOnly) {
        letter = 'a';
    }
    bool const isBoth = letter == 'r' ? (flags & XFILE_OPEN_READWRITE) != 0 : !writesOnly;
    return std::string(1, letter) + (isBoth ? "+" : "");
}

} // namespace

CXStdioFile::CXStdioFile(bool throwing) : CXFile(throwing) {}

CXStdioFile::CXStdioFile(FILE* givenStream, bool throwing)
    : CXFile(givenStream ? platform::HandleFromStream(givenStream) : nullptr, throwing), stream(givenStream) {
    if (!givenStream && throwing) {
        detail::ThrowInvalidArg();
    }
}

CXStdioFile::CXStdioFile(char16_t const* filePath, unsigned int flags) {
    if (!filePath && (flags & XFILE_OPEN_OPTIONAL_PATH) != 0) {
        return;
    }
    CXFileException failure(CXFileException::badPath, filePath); // a null path tells nothing more
    if (!CXStdioFile::Open(filePath, flags, &failure)) {
        detail::ThrowFile(failure.cause, failure.fileName);
    }
}

CXStdioFile::~CXStdioFile() {
    CXStdioFile::Abort();
    std::free(lineBuffer);
}

// ---- Failures ----

bool CXStdioFile::IsOpen() const {
    errno = stream ? 0 : EBADF; // what is left of an earlier failure must not be taken for this one's
    return stream != nullptr;
}

void CXStdioFile::ThrowErrno(CXFileException::FileExceptionType cause) const {
    ThrowErrno(cause, path);
}

void CXStdioFile::ThrowErrno(CXFileException::FileExceptionType cause, CXTString<char16_t> const& name) const {
    if (!throwOnError) {
        return;
    }
    int const error = errno;
    if (stream && std::ferror(stream)) {
        std::clearerr(stream);
        if (error == ENOMEM) {
            detail::ThrowMemory();
        }
        if (error != 0) {
            detail::ThrowInvalidArg();
        }
    }
    CXFileException::ThrowErrno(cause, error, name);
}

// ---- Opening and closing ----

bool CXStdioFile::Open(char16_t const* filePath, unsigned int flags, CXFileException* error) {
    if (!filePath) {
        return false;
    }
    CXTString<char16_t> const wanted(filePath); // the caller may pass the path that Abort empties
    Abort();
    if (!OpenHandle(wanted, flags & ~XFILE_TYPE_TEXT, error)) {
        return false;
    }
    bool const isBinary = (flags & XFILE_TYPE_BINARY) != 0;
    bool const isWide = (flags & XFILE_TYPE_WIDE) != 0;
    auto const lines = isBinary ? platform::StreamLines::Binary
                       : isWide ? platform::StreamLines::Wide
                                : platform::StreamLines::Narrow;
    errno = 0;
    FILE* const opened = platform::OpenStream(handle, ModeOf(flags).c_str(), lines);
    if (!opened) {
        if (error) {
            CXFileException::ThrowErrno(CXFileException::accessDenied, errno, wanted, error);
        }
        Release();
        return false;
    }
    stream = opened;
    holdsUnits = isBinary || isWide;
    detail::CallFileHook(stream);
    return true;
}

// The handle goes with its stream.
int CXStdioFile::CloseStream() {
    handle = nullptr;
    closeOnDelete = false;
    FILE* const closed = std::exchange(stream, nullptr);
    // The stream itself is gone when the hook hears of it; volatile, lest the compiler take it for a use of the stream.
    std::uintptr_t const volatile address = reinterpret_cast<std::uintptr_t>(closed);
    errno = 0;
    int const result = std::fclose(closed);
    int const error = errno;
    if (result == 0) {
        detail::CallFileHook(reinterpret_cast<void*>(address));
    }
    errno = error;
    return result;
}

void CXStdioFile::Close() {
    CXTString<char16_t> const closedPath = path;
    int const result = stream ? CloseStream() : 0;
    int const error = errno;
    Release();
    if (result != 0) {
        errno = error;
        ThrowErrno(CXFileException::diskFull, closedPath);
    }
}

void CXStdioFile::Abort() {
    if (stream && closeOnDelete) {
        CloseStream();
    }
    stream = nullptr;
    Release();
}

void CXStdioFile::Flush() {
    if (stream) {
        errno = 0;
        if (std::fflush(stream) != 0) {
            ThrowErrno(CXFileException::diskFull);
        }
    }
}

// ---- Position and size ----

unsigned long long CXStdioFile::GetPosition() const {
    long long const position = IsOpen() ? platform::TellStream(stream) : -1;
    if (position < 0) {
        ThrowErrno(CXFileException::invalidFile);
        return BadPosition;
    }
    return static_cast<unsigned long long>(position);
}

unsigned long long CXStdioFile::Seek(long long offset, SeekPosition from) {
    bool const isWithin = offset >= INT_MIN && offset <= INT_MAX;
    bool const isOrigin = from >= begin && from <= end;
    if (!IsOpen() || !isWithin || !isOrigin ||
        !platform::SeekStream(stream, offset, static_cast<platform::SeekOrigin>(from))) {
        ThrowErrno(CXFileException::badSeek);
    }
    return stream ? static_cast<unsigned long long>(platform::TellStream(stream)) : BadPosition;
}

bool CXStdioFile::SetLength(unsigned long long newLength) {
    if (stream && !platform::SeekStream(stream, 0, platform::FileEnd)) { // from here on the handle alone has a place
        ThrowErrno(CXFileException::badSeek);
        return false;
    }
    return CXFile::SetLength(newLength);
}

unsigned long long CXStdioFile::GetLength() const {
    long long const position = IsOpen() ? platform::TellStream(stream) : -1;
    if (position < 0) {
        ThrowErrno(CXFileException::invalidFile);
        return 0;
    }
    long long length = -1;
    if (platform::SeekStream(stream, 0, platform::FileEnd)) {
        length = platform::TellStream(stream);
    }
    if (length < 0 || !platform::SeekStream(stream, position, platform::FileBegin)) {
        ThrowErrno(CXFileException::badSeek);
        return 0;
    }
    return static_cast<unsigned long long>(length);
}

// ---- Bytes ----

unsigned long long CXStdioFile::Read(void* data, unsigned long long count) {
    if (count == 0) {
        return 0;
    }
    if (!data) {
        if (throwOnError) {
            detail::ThrowInvalidArg();
        }
        return 0;
    }
    std::size_t const read = IsOpen() ? std::fread(data, 1, count, stream) : 0;
    if (!stream || std::ferror(stream) || (read == 0 && !std::feof(stream))) {
        ThrowErrno(CXFileException::genericException);
        return 0;
    }
    return read;
}

void CXStdioFile::Write(void const* data, unsigned long long count) {
    if (count == 0) {
        return;
    }
    if (!data) {
        if (throwOnError) {
            detail::ThrowInvalidArg();
        }
        return;
    }
    if (!IsOpen() || !platform::PrepareStreamWrite(stream) || std::fwrite(data, 1, count, stream) != count) {
        ThrowErrno(CXFileException::genericException);
    }
}

void CXStdioFile::WriteString(char16_t const* text) {
    if (!text || !*text) {
        return;
    }
    std::size_t size = xStrLen(text) * sizeof *text;
    void const* stored = text;
    CXTString<char> narrow;
    if (!holdsUnits) {
        XFASTCW2A(narrow, text);
        size = static_cast<std::size_t>(narrow.GetLength());
        stored = static_cast<char const*>(narrow);
    }
    if (!IsOpen() || !platform::PrepareStreamWrite(stream) || std::fwrite(stored, 1, size, stream) != size) {
        ThrowErrno(CXFileException::diskFull);
    }
}
