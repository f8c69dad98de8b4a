// SPDX-License-Identifier: MIT
// Streams are custom streams of the GNU C library, whose public record shows what is buffered.
//
// The library's idea of the position counts the bytes that it was given, which are fewer than the file's where a CR was
// dropped. So its cached offset is taken away after each transfer (Forget), and it asks the stream, which answers with
// the place in the file.

#include "zeltools/platform/streams.h"

#include "zeltools/platform/errors.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform {

namespace {

constexpr std::size_t BlockSize = 32 * 1024; ///< Larger ones no longer gain, and leave the processor's first cache.

/// The library's errno for what the handle's call said.
int ErrnoOfLastError() {
    switch (GetLastError()) {
    case ErrorDiskFull: return ENOSPC;
    case ErrorAccessDenied:
    case ErrorInvalidHandle: return EBADF;
    case ErrorOperationAborted: return EINTR;
    case ErrorNegativeSeek: return EINVAL;
    case ErrorSeek: return ESPIPE;
    case ErrorNotEnoughMemory: return ENOMEM;
    case ErrorFileTooLarge: return EFBIG;
    case ErrorBrokenPipe: return EPIPE;
    default: return EIO;
    }
}

void Forget(FILE* stream) {
    stream->_offset = -1;
}

std::size_t Unread(FILE const* stream) {
    return static_cast<std::size_t>(stream->_IO_read_end - stream->_IO_read_ptr);
}

/// What a custom stream works on.
class Source {
public:
    Source(HANDLE openFile, StreamLines lineKind, bool appending)
        : file(openFile), lines(lineKind), unit(lineKind == StreamLines::Wide ? 2U : 1U), appends(appending) {}

    FILE* stream = nullptr;
    std::unique_ptr<char[]> buffer{new (std::nothrow) char[BlockSize]}; ///< The library's, given to the stream.

    ssize_t Read(char* target, std::size_t size) {
        Forget(stream);
        dropped.clear();
        delivered = 0;
        if (lines == StreamLines::Binary) {
            return ReadFile(file, target, size, delivered) || delivered > 0 ? static_cast<ssize_t>(delivered)
                                                                            : Failed();
        }
        if (Ahead() == 0 && size >= unit) { // mostly there is nothing to translate, and so nothing to copy
            if (!ReadFile(file, target, std::min(size, BlockSize), delivered) && delivered == 0) {
                return Failed();
            }
            isFileEnd = delivered == 0;
            if (delivered % unit == 0 && FindUnit(target, 0, delivered, '\r') == delivered) {
                return static_cast<ssize_t>(delivered);
            }
            if (!TakeRaw(target, std::exchange(delivered, 0))) {
                return Failed();
            }
        }
        if (half >= 0) {
            *target = static_cast<char>(std::exchange(half, -1));
            delivered = 1;
        } else if (size < unit) { // only an unbuffered stream asks for so little
            std::array<char, 2> whole{};
            if (!Translate(whole.data(), unit)) {
                return Failed();
            }
            *target = whole[0];
            half = delivered == unit ? static_cast<unsigned char>(whole[1]) : -1;
            delivered = std::min<std::size_t>(delivered, 1);
        } else if (!Translate(target, size - size % unit)) {
            return Failed();
        }
        return static_cast<ssize_t>(delivered);
    }

    ssize_t Write(char const* data, std::size_t size) {
        Forget(stream);
        if (!GoBackToReadPlace() || (appends && !SetFilePointer(file, 0, nullptr, FileEnd))) {
            Failed();
            return 0;
        }
        std::size_t written = 0;
        if (lines == StreamLines::Binary) {
            if (!WriteFile(file, data, size, written)) {
                Failed();
            }
            return static_cast<ssize_t>(written);
        }
        constexpr std::string_view NarrowEnd = "\r\n";
        constexpr std::string_view WideEnd{"\r\0\n\0", 4};
        translated.clear();
        for (std::size_t at = 0; at < size;) {
            std::size_t const end = FindUnit(data, at, size, '\n');
            translated.append(data + at, end - at);
            if (end < size) {
                translated.append(unit == 1 ? NarrowEnd : WideEnd);
            }
            at = end + unit;
        }
        if (!WriteFile(file, translated.data(), translated.size(), written)) {
            Failed();
            return 0;
        }
        return static_cast<ssize_t>(size);
    }

    /// `place` comes in as the library's distance and leaves as the position that makes the library's sums come out
    /// right: it subtracts what it has not given out yet, and adds what it has not written yet, as it counts them.
    int Seek(off64_t& place, int whence) {
        long long position = 0;
        if (!SetFilePointer(file, 0, &position, FileCurrent)) {
            Failed();
            return -1;
        }
        position += DroppedInPending() - DroppedInUnread() - Ahead();
        bool const isQuestion = whence == SEEK_CUR && place == 0;
        if (!isQuestion) {
            long long const target = whence == SEEK_CUR ? position + place : place;
            if (!SetFilePointer(file, target, &position, whence == SEEK_END ? FileEnd : FileBegin)) {
                Failed();
                return -1;
            }
            ForgetRaw();
            position += whence == SEEK_END ? DroppedInPending() : 0;
        }
        place = position;
        return 0;
    }

    int Close() { return CloseFile(file) ? 0 : static_cast<int>(Failed()); }

private:
    /// -1, with errno for what the handle's call said.
    static ssize_t Failed() {
        errno = ErrnoOfLastError();
        return -1;
    }

    /// The place of a unit in [at, size), which are whole units but for the last; `size` or more for none.
    std::size_t FindUnit(char const* data, std::size_t at, std::size_t size, char wanted) const {
        for (std::size_t from = at; from < size;) {
            auto const* const found = static_cast<char const*>(std::memchr(data + from, wanted, size - from));
            if (!found) {
                break;
            }
            auto const place = static_cast<std::size_t>(found - data);
            if (unit == 1 || ((place - at) % 2 == 0 && place + 1 < size && data[place + 1] == 0)) {
                return place;
            }
            from = place + 1;
        }
        return size;
    }

    /// A CR at the end of the raw bytes, or half a unit, says nothing without what follows.
    bool NeedsMore() const {
        std::size_t const size = rawEnd - rawBegin;
        return !isFileEnd && (size < unit || (size < 2 * unit && FindUnit(raw.get(), rawBegin, rawEnd, '\r') < rawEnd));
    }

    bool MakeRaw() {
        if (!raw) {
            raw.reset(new (std::nothrow) char[BlockSize]);
        }
        if (!raw) {
            SetLastError(ErrorNotEnoughMemory);
        }
        return raw != nullptr;
    }

    bool TakeRaw(char const* bytes, std::size_t size) {
        if (!MakeRaw()) {
            return false;
        }
        std::memcpy(raw.get(), bytes, size);
        rawBegin = 0;
        rawEnd = size;
        return true;
    }

    bool Fill() {
        if (!MakeRaw()) {
            return false;
        }
        std::memmove(raw.get(), raw.get() + rawBegin, rawEnd - rawBegin);
        rawEnd -= rawBegin;
        rawBegin = 0;
        std::size_t read = 0;
        if (!ReadFile(file, raw.get() + rawEnd, BlockSize - rawEnd, read) && read == 0) {
            return false;
        }
        isFileEnd = read == 0;
        rawEnd += read;
        return true;
    }

    /// Gives whole units, or the odd byte at the file's end; nothing at its end.
    bool Translate(char* target, std::size_t size) {
        while (delivered == 0) {
            if (rawBegin == rawEnd || NeedsMore()) {
                if (!Fill()) {
                    return false;
                }
                if (rawBegin == rawEnd) {
                    return true;
                }
            }
            while (delivered < size && rawBegin < rawEnd && !NeedsMore()) {
                TranslateRun(target, size);
            }
        }
        return true;
    }

    /// Copies up to the next CR, beginning with a line feed whose CR is dropped, or a CR that stands alone.
    void TranslateRun(char* target, std::size_t size) {
        std::size_t carriage = FindUnit(raw.get(), rawBegin, rawEnd, '\r');
        if (carriage == rawBegin) {
            std::size_t const next = rawBegin + unit;
            carriage = next;
            if (next + unit <= rawEnd && FindUnit(raw.get(), next, next + unit, '\n') == next) {
                dropped.push_back(delivered);
                rawBegin = next;
                carriage = FindUnit(raw.get(), rawBegin, rawEnd, '\r');
            }
        }
        std::size_t run = std::min({carriage - rawBegin, rawEnd - rawBegin, size - delivered});
        if (run > unit) {
            run -= isFileEnd ? 0 : run % unit;
        }
        std::memcpy(target + delivered, raw.get() + rawBegin, run);
        delivered += run;
        rawBegin += run;
    }

    /// Bytes of the file that are missing in the library's unread part.
    long long DroppedInUnread() const {
        std::size_t const first = delivered - std::min(Unread(stream), delivered);
        auto const from = std::lower_bound(dropped.begin(), dropped.end(), first);
        return (dropped.end() - from) * static_cast<long long>(unit);
    }

    /// Bytes by which the library's unwritten part will grow.
    long long DroppedInPending() const {
        if (lines == StreamLines::Binary || stream->_IO_write_ptr <= stream->_IO_write_base) {
            return 0;
        }
        auto const size = static_cast<std::size_t>(stream->_IO_write_ptr - stream->_IO_write_base);
        long long grows = 0;
        for (std::size_t at = 0; (at = FindUnit(stream->_IO_write_base, at, size, '\n')) < size; at += unit) {
            grows += static_cast<long long>(unit);
        }
        return grows;
    }

    /// Bytes that were read and not given to the library.
    long long Ahead() const { return static_cast<long long>(rawEnd - rawBegin) + (half >= 0 ? 1 : 0); }

    void ForgetRaw() {
        rawBegin = rawEnd = 0;
        half = -1;
    }

    bool GoBackToReadPlace() {
        long long const ahead = Ahead();
        ForgetRaw();
        return ahead == 0 || SetFilePointer(file, -ahead, nullptr, FileCurrent);
    }

    HANDLE file;
    StreamLines lines;
    std::size_t unit; ///< Bytes of a character.
    bool appends;
    bool isFileEnd = false;
    int half = -1;               ///< Second byte of a unit whose first was given out alone.
    std::unique_ptr<char[]> raw; ///< Bytes of the file that are not translated yet, rawBegin to rawEnd.
    std::size_t rawBegin = 0;
    std::size_t rawEnd = 0;
    std::size_t delivered = 0;        ///< Bytes that the last read gave.
    std::vector<std::size_t> dropped; ///< Places in them in front of which a CR was dropped.
    std::string translated;           ///< Room for a write.
};

Source& SourceOf(void* cookie) {
    return *static_cast<Source*>(cookie);
}

} // namespace

FILE* OpenStream(HANDLE file, char const* mode, StreamLines lines) {
    bool const appends = *mode == 'a';
    auto* const source = new (std::nothrow) Source(file, lines, appends);
    if (source == nullptr || !source->buffer) {
        delete source;
        errno = ENOMEM;
        return nullptr;
    }
    cookie_io_functions_t functions{};
    functions.read = [](void* cookie, char* target, std::size_t size) { return SourceOf(cookie).Read(target, size); };
    functions.write = [](void* cookie, char const* data, std::size_t size) {
        return SourceOf(cookie).Write(data, size);
    };
    functions.seek = [](void* cookie, off64_t* place, int whence) { return SourceOf(cookie).Seek(*place, whence); };
    functions.close = [](void* cookie) {
        std::unique_ptr<Source> const closed(&SourceOf(cookie));
        return closed->Close();
    };
    FILE* const stream = fopencookie(source, mode, functions);
    if (stream == nullptr) {
        delete source;
        return nullptr;
    }
    source->stream = stream;
    setvbuf(stream, source->buffer.get(), _IOFBF, BlockSize);
    if (appends && std::strchr(mode, '+') == nullptr) {
        SetFilePointer(file, 0, nullptr, FileEnd); // what has no position has no other place
    }
    return stream;
}

HANDLE HandleFromStream(FILE* stream) {
    int const before = errno;
    int const descriptor = fileno(stream);
    errno = before;
    HANDLE const handle = descriptor < 0 ? InvalidHandle : HandleFromFileDescriptor(descriptor);
    return handle == InvalidHandle ? nullptr : handle;
}

long long TellStream(FILE* stream) {
    Forget(stream);
    return ftello(stream);
}

bool SeekStream(FILE* stream, long long distance, SeekOrigin origin) {
    if (fflush(stream) != 0) { // writes what is pending, and gives back what was read ahead
        return false;
    }
    Forget(stream);
    if (origin == FileEnd) {
        return fseeko(stream, distance, SEEK_END) == 0;
    }
    if (origin == FileBegin) { // the library would seek to a block's begin and count bytes from there
        long long const position = TellStream(stream);
        if (position < 0 || distance < 0) {
            errno = position < 0 ? errno : EINVAL;
            return false;
        }
        distance -= position;
    }
    return fseeko(stream, distance, SEEK_CUR) == 0;
}

std::string_view PeekStream(FILE* stream) {
    if (Unread(stream) == 0) {
        int const first = getc_unlocked(stream);
        if (first == EOF) {
            return {};
        }
        ungetc(first, stream);
    }
    return {stream->_IO_read_ptr, Unread(stream)};
}

void SkipStream(FILE* stream, std::size_t count) {
    stream->_IO_read_ptr += std::min(count, Unread(stream));
}

bool PrepareStreamWrite(FILE* stream) {
    return Unread(stream) == 0 || SeekStream(stream, 0, FileCurrent);
}

} // namespace platform
