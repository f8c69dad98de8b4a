// SPDX-License-Identifier: MIT
// The archive's life and its buffer. Scalars go through the span from bufferStart to end:
//
//     storing   | stored, not yet in the file | room            |
//               bufferStart                   cursor            end
//
//     loading   | consumed | read, not yet consumed | free      |
//               bufferStart  cursor                 end         bufferStart + bufferSize
//
// A file that lends its memory gives such a span at a time in place of the buffer.

#include "zeltools/persistence/xarchive.h"

#include "zeltools/foundation/block_storage.h"
#include "zeltools/foundation/thread_exceptions.h"
#include "zeltools/persistence/xarchive_private.h"
#include "zeltools/persistence/xfile.h"

#include <algorithm>

namespace {

/// One call of a file moves at most this many bytes, since files take counts of 32 bits.
constexpr unsigned long long LargestTransfer = 0x40000000;

/// What BytesLeft says of a file that cannot tell.
constexpr unsigned long long Unknown = ~0ull;

} // namespace

// ---------------------------------------------------------------------------------------------------------------
// Beginning and ending

CXArchive::CXArchive(CXFile* target, unsigned int modeBits, unsigned int size, void* buffer)
    : file(target), mode(modeBits), bufferSize(size) {
    if (!file)
        detail::ThrowInvalidArg();
    fileName = file->GetFilePath();
    auto* start = static_cast<unsigned char*>(buffer);
    if (bufferSize < MinimalBufferSize) {
        bufferSize = MinimalBufferSize;
        start = nullptr;
    }
    if (!start) {
        directBuffer = (file->BufferCommand(CXFile::BufferCheck, 0, nullptr, nullptr) & 1) != 0;
        if (directBuffer)
            return; // the first read or write asks for a span
        start = static_cast<unsigned char*>(detail::AllocateBlock(bufferSize, 1, 1));
        userBuffer = false;
    }
    unsigned char* const bufferEnd = start + bufferSize;
    SetSpan(start, IsLoading() ? bufferEnd : start, bufferEnd);
}

CXArchive::~CXArchive() {
    if (file && (mode & NoFlushOnDelete) == 0) {
        try {
            Flush(true);
        } catch (CXException* exception) {
            exception->Delete();
        } catch (...) {
        }
    }
    if (!userBuffer)
        detail::FreeBlock(bufferStart);
}

void CXArchive::Close() {
    if (!file)
        return;
    Flush(true);
    file = nullptr;
    SetSpan(bufferStart, bufferStart, bufferStart); // so that what comes later meets the missing file
}

void CXArchive::Abort() {
    file = nullptr;
    if (!userBuffer)
        detail::FreeBlock(bufferStart);
    SetSpan(nullptr, nullptr, nullptr);
}

void CXArchive::Flush(bool final) {
    CXFile& target = OpenFile();
    if (IsLoading()) {
        if (Unread() != 0)
            target.Seek(-static_cast<long long>(Unread()), CXFile::current);
        cursor = end;
        return;
    }
    if (directBuffer) {
        if (cursor != bufferStart)
            target.BufferCommand(CXFile::BufferCommit, Pending(), nullptr, nullptr);
        SetSpan(nullptr, nullptr, nullptr); // the next write of the file may move its memory
        if (!final)
            TakeSpan(CXFile::BufferWrite);
    } else if (cursor != bufferStart) {
        target.Write(bufferStart, Pending());
        cursor = bufferStart;
    }
}

/// The file, which a host may have closed too early.
CXFile& CXArchive::OpenFile() const {
    if (!file)
        detail::ThrowInvalidArg();
    return *file;
}

void CXArchive::Throw(CXArchiveException::ArchiveExceptionType cause) const {
    auto* const exception = new CXArchiveException(cause, fileName);
    XSetThreadException(exception);
    throw exception;
}

// ---------------------------------------------------------------------------------------------------------------
// The buffer

void CXArchive::SetSpan(unsigned char* start, unsigned char* position, unsigned char* spanEnd) {
    bufferStart = start;
    cursor = position;
    end = spanEnd;
}

/// Takes the next span of a file that lends its memory; it is empty at the end and when memory runs out.
void CXArchive::TakeSpan(unsigned int command) {
    unsigned char* start = nullptr;
    unsigned char* spanEnd = nullptr;
    SetSpan(nullptr, nullptr, nullptr);
    if (OpenFile().BufferCommand(command, bufferSize, &start, &spanEnd) != 0)
        SetSpan(start, start, spanEnd);
}

/// Makes room for a scalar that does not fit, or says why it cannot be stored.
void CXArchive::MakeRoom(std::size_t count) {
    if (IsLoading())
        Throw(CXArchiveException::archiveIsLoading);
    Flush(false);
    if (Room() < count)
        Throw(CXArchiveException::bufferTooSmall); // the file lends less than a scalar
}

/// Brings in the rest of a scalar, or says why it cannot be loaded.
void CXArchive::Fetch(std::size_t count) {
    if (IsStoring())
        Throw(CXArchiveException::archiveIsStoring);
    FillBuffer(count - Unread());
}

void CXArchive::FillBuffer(unsigned long long needed) {
    if (IsStoring())
        Throw(CXArchiveException::archiveIsStoring);
    CXFile& source = OpenFile();
    std::size_t const unread = Unread();
    unsigned long long const total = std::max(needed, unread + needed); // of a sum that wraps, too much is left
    if (directBuffer) {
        if (unread != 0)
            source.Seek(-static_cast<long long>(unread), CXFile::current);
        TakeSpan(CXFile::BufferRead);
    } else if (cursor != bufferStart) {
        std::memmove(bufferStart, cursor, unread);
        SetSpan(bufferStart, bufferStart, bufferStart + unread);
        while (Unread() < bufferSize) {
            unsigned long long const asked = bufferSize - Unread();
            unsigned long long const got = source.Read(end, asked);
            end += got;
            if (got == 0 || got == asked || Unread() >= total)
                break;
        }
    }
    if (bufferSize < total)
        Throw(CXArchiveException::bufferTooSmall);
    if (Unread() < total)
        Throw(CXArchiveException::endOfFile);
}

unsigned long long CXArchive::BytesLeft() const {
    if (!file)
        return 0;
    try {
        unsigned long long const length = file->GetLength();
        unsigned long long const position = file->GetPosition();
        if (length == 0 || position == CXFile::BadPosition) // as pipes and devices say
            return Unknown;
        return Unread() + (position < length ? length - position : 0);
    } catch (CXException* exception) {
        exception->Delete();
        return Unknown;
    }
}

bool CXArchive::RequireBytes(unsigned long long count) const {
    if (count <= std::max<unsigned long long>(Unread(), detail::TrustedBytes))
        return true;
    unsigned long long const left = BytesLeft();
    if (count > left)
        Throw(CXArchiveException::endOfFile);
    return left != Unknown;
}

// ---------------------------------------------------------------------------------------------------------------
// Bytes

void CXArchive::Write(void const* data, unsigned long long count) {
    if (!data || count == 0)
        return;
    if (IsLoading())
        Throw(CXArchiveException::archiveIsLoading);
    auto const* bytes = static_cast<unsigned char const*>(data);
    std::size_t const fitting = std::min<unsigned long long>(count, Room());
    if (fitting != 0)
        std::memcpy(cursor, bytes, fitting);
    cursor += fitting;
    bytes += fitting;
    count -= fitting;
    if (count == 0)
        return;

    Flush(false);
    unsigned long long const tail = count % bufferSize;
    unsigned long long const whole = count - tail;
    if (whole != 0) {
        WriteThrough(bytes, whole);
        if (directBuffer)
            TakeSpan(CXFile::BufferWrite);
    }
    if (cursor != bufferStart || tail > Room()) // the file lends less than it was asked for
        detail::ThrowInvalidArg();
    if (tail != 0)
        std::memcpy(cursor, bytes + whole, tail);
    cursor += tail;
}

/// Writes past the buffer, which is empty.
void CXArchive::WriteThrough(unsigned char const* data, unsigned long long count) {
    while (count != 0) {
        unsigned long long const piece = std::min(count, LargestTransfer);
        OpenFile().Write(data, piece);
        data += piece;
        count -= piece;
    }
}

unsigned long long CXArchive::Read(void* data, unsigned long long count) {
    if (!data || count == 0)
        return 0;
    if (IsStoring())
        Throw(CXArchiveException::archiveIsStoring);
    auto* bytes = static_cast<unsigned char*>(data);
    std::size_t const buffered = std::min<unsigned long long>(count, Unread());
    if (buffered != 0)
        std::memcpy(bytes, cursor, buffered);
    cursor += buffered;
    bytes += buffered;
    unsigned long long missing = count - buffered;
    if (missing == 0)
        return count;

    unsigned long long const whole = missing - missing % bufferSize;
    unsigned long long const got = ReadThrough(bytes, whole);
    missing -= got;
    if (got < whole || missing == 0)
        return count - missing;
    Refill(missing);
    std::size_t const rest = std::min<unsigned long long>(missing, Unread());
    if (rest != 0)
        std::memcpy(bytes + got, cursor, rest);
    cursor += rest;
    return count - missing + rest;
}

/// Reads past the buffer, which is empty; short only at the end of the file.
unsigned long long CXArchive::ReadThrough(unsigned char* data, unsigned long long count) {
    unsigned long long done = 0;
    while (done < count) {
        unsigned long long const got = OpenFile().Read(data + done, std::min(count - done, LargestTransfer));
        if (got == 0)
            break;
        done += got;
    }
    return done;
}

/// Fills the buffer, which is empty, with at least `needed` bytes where the file has them.
void CXArchive::Refill(unsigned long long needed) {
    if (directBuffer) {
        TakeSpan(CXFile::BufferRead);
        return;
    }
    CXFile& source = OpenFile();
    std::size_t filled = 0;
    while (filled < needed) {
        unsigned long long const got = source.Read(bufferStart + filled, bufferSize - filled);
        if (got == 0)
            break;
        filled += got;
    }
    SetSpan(bufferStart, bufferStart, bufferStart + filled);
}

void CXArchive::EnsureRead(void* data, unsigned long long count) {
    if (Read(data, count) != count)
        Throw(CXArchiveException::endOfFile);
}

// ---------------------------------------------------------------------------------------------------------------
// Counts: 16 bits, or all ones and 32 bits, or all ones again and 64 bits

void CXArchive::WriteCount(unsigned long long count) {
    if (count < 0xFFFF) {
        *this << static_cast<unsigned short>(count);
        return;
    }
    *this << static_cast<unsigned short>(0xFFFF);
    if (count < 0xFFFFFFFF)
        *this << static_cast<unsigned int>(count);
    else
        *this << 0xFFFFFFFFu << count;
}

/// Reads what follows the 16 bits of a count that does not fit into them.
unsigned long long CXArchive::ReadLongCount() {
    unsigned int count;
    *this >> count;
    if (count != 0xFFFFFFFF)
        return count;
    unsigned long long longCount;
    *this >> longCount;
    return longCount;
}
