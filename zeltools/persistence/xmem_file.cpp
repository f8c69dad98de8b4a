// SPDX-License-Identifier: MIT
#include "zeltools/persistence/xmem_file.h"

#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/persistence/file_failure_private.h"

#include <algorithm>
#include <cassert>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>

ZEL_IMPLEMENT_RUNTIME_CLASS(CXMemFile, CXFile, RuntimeClassNotSerializable)

namespace {

constexpr unsigned long long LargestBlock = PTRDIFF_MAX; ///< The allocator gives no more.

bool IsWithin(unsigned char const* place, unsigned char const* block, unsigned long long size) {
    // std::less orders unrelated pointers too.
    return block && !std::less<>{}(place, block) && std::less<>{}(place, block + size);
}

} // namespace

CXMemFile::CXMemFile(unsigned int growBytes, bool throwing)
    : CXFile(throwing), growStep(growBytes), throwOnError(throwing) {}

CXMemFile::CXMemFile(unsigned char const* givenBuffer, unsigned long long size, bool ownsBuffer, bool throwing)
    : CXFile(throwing), growStep(0), throwOnError(throwing) {
    Attach(givenBuffer, size, ownsBuffer);
}

CXMemFile::~CXMemFile() {
    Free();
}

void CXMemFile::Attach(unsigned char const* givenBuffer, unsigned long long size, bool ownsBuffer) {
    if (autoDelete && buffer != givenBuffer) {
        Free(buffer);
    }
    buffer = const_cast<unsigned char*>(givenBuffer);
    capacity = length = givenBuffer ? size : 0;
    position = 0;
    autoDelete = ownsBuffer;
    growStep = ownsBuffer ? DefaultGrowBytes : 0;
}

unsigned char* CXMemFile::Detach() {
    unsigned char* const given = buffer;
    InitMemFile();
    return given;
}

unsigned char* CXMemFile::Alloc(unsigned long long size) {
    return Realloc(nullptr, size);
}

void CXMemFile::Free(unsigned char* memory) {
    std::free(memory);
}

unsigned char* CXMemFile::Realloc(unsigned char* memory, unsigned long long size) {
    if (size == 0 || size > LargestBlock) {
        return nullptr;
    }
    return static_cast<unsigned char*>(std::realloc(memory, size));
}

unsigned char* CXMemFile::Memcpy(unsigned char* target, unsigned char const* source, unsigned long long count) {
    return static_cast<unsigned char*>(std::memmove(target, source, count));
}

void CXMemFile::Free() {
    if (autoDelete) {
        Free(buffer);
    }
    InitMemFile();
}

void CXMemFile::InitMemFile() {
    growStep = DefaultGrowBytes;
    capacity = length = position = 0;
    buffer = nullptr;
    autoDelete = true;
    throwOnError = true;
}

bool CXMemFile::GrowBuffer(unsigned long long needed) {
    if (needed <= capacity) {
        return true;
    }
    if (growStep == 0) {
        growStep = DefaultGrowBytes;
    }
    unsigned long long const missing = needed - capacity;
    unsigned long long const steps = missing / growStep + (missing % growStep != 0 ? 1 : 0);
    unsigned long long added = 0;
    unsigned long long newCapacity = 0;
    unsigned char* grown = nullptr;
    if (!__builtin_mul_overflow(steps, growStep, &added) && !__builtin_add_overflow(capacity, added, &newCapacity)) {
        grown = Realloc(buffer, newCapacity);
    }
    if (!grown) {
        if (throwOnError) {
            detail::ThrowMemory();
        }
        return false;
    }
    buffer = grown;
    capacity = newCapacity;
    return true;
}

// Content now ends at `to`; what lies between the old end and `from` was never written.
void CXMemFile::RaiseLength(unsigned long long from, unsigned long long to) {
    if (from > length) {
        std::memset(buffer + length, 0, from - length);
    }
    length = std::max(length, to);
}

unsigned long long CXMemFile::GetPosition() const {
    return position;
}

unsigned long long CXMemFile::GetLength() const {
    return length;
}

unsigned long long CXMemFile::Seek(long long offset, SeekPosition from) {
    unsigned long long base = 0;
    switch (from) {
    case begin: break;
    case current: base = position; break;
    case end:
        if (offset > 0) {
            if (throwOnError) {
                detail::ThrowFile(CXFileException::badSeek, CXTString<char16_t>());
            }
            return position;
        }
        base = length;
        break;
    default: return position;
    }
    if (offset < 0) {
        unsigned long long const back = 0ULL - static_cast<unsigned long long>(offset);
        if (back > base && throwOnError) {
            detail::ThrowFile(CXFileException::badSeek, CXTString<char16_t>());
        }
        return position = back > base ? 0 : base - back;
    }
    unsigned long long target = 0;
    if (__builtin_add_overflow(base, static_cast<unsigned long long>(offset), &target)) {
        target = ULLONG_MAX; // no memory holds this either
    }
    if (target > length && !GrowBuffer(target)) {
        target = length;
    }
    return position = target;
}

bool CXMemFile::SetLength(unsigned long long newLength) {
    if (newLength > UINT_MAX) {
        if (throwOnError) {
            detail::ThrowMemory();
        }
        return false;
    }
    if (!GrowBuffer(newLength)) {
        return false;
    }
    RaiseLength(newLength, newLength);
    length = newLength;
    position = std::min(position, length);
    return true;
}

unsigned long long CXMemFile::Read(void* data, unsigned long long count) {
    if (count == 0) {
        return 0;
    }
    if (!data) {
        if (throwOnError) {
            detail::ThrowInvalidArg();
        }
        return 0;
    }
    if (position >= length) {
        return 0;
    }
    unsigned long long const size = static_cast<unsigned int>(std::min(count, length - position));
    Memcpy(static_cast<unsigned char*>(data), buffer + position, size);
    position += size;
    return size;
}

void CXMemFile::Write(void const* data, unsigned long long count) {
    if (count == 0) {
        return;
    }
    auto const* source = static_cast<unsigned char const*>(data);
    unsigned long long after = 0;
    if (!source || __builtin_add_overflow(position, count, &after)) {
        if (throwOnError) {
            detail::ThrowInvalidArg();
        }
        return;
    }
    if (after > capacity) {
        bool const isOwnContent = IsWithin(source, buffer, capacity);
        auto const offset = isOwnContent ? source - buffer : 0;
        if (!GrowBuffer(after)) {
            return;
        }
        if (after > capacity) { // an override claimed a growth that it did not make
            detail::ThrowInvalidArg();
        }
        if (isOwnContent) {
            source = buffer + offset;
        }
    }
    Memcpy(buffer + position, source, count);
    RaiseLength(position, after);
    position = after;
}

void CXMemFile::Abort() {
    Close();
}

void CXMemFile::Flush() {}

void CXMemFile::Close() {
    Free();
}

unsigned long long CXMemFile::BufferCommand(unsigned int command, unsigned long long count, unsigned char** start,
                                            unsigned char** max) {
    switch (command) {
    case BufferCheck: return 1;
    case BufferCommit: {
        assert(count <= capacity - position);
        unsigned long long const after = position + std::min(count, capacity - position);
        RaiseLength(position, after);
        position = after;
        return 0;
    }
    case BufferWrite: {
        if (!start || !max) {
            return 0;
        }
        unsigned long long after = 0;
        if (__builtin_add_overflow(position, count, &after)) {
            if (throwOnError) {
                detail::ThrowInvalidArg();
            }
            return 0;
        }
        if (after > capacity && !GrowBuffer(after)) {
            return 0;
        }
        *start = buffer + position;
        *max = buffer + std::min(capacity, after);
        return static_cast<unsigned long long>(*max - *start);
    }
    case BufferRead: {
        if (!start || !max) {
            return 0;
        }
        if (count == UINT_MAX) { // all there is, as 32 bits tell it
            count = static_cast<unsigned int>(capacity) - static_cast<unsigned int>(position);
        }
        unsigned long long const span = position < length ? std::min(count, length - position) : 0;
        *start = buffer + position;
        position += span;
        *max = buffer + position;
        return span;
    }
    default: return 0;
    }
}
