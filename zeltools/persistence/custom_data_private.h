// SPDX-License-Identifier: MIT
// How the sources of CCustomData reach its chunks. The lock is held in all of it.

#pragma once

#include "zeltools/persistence/custom_data.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace detail {

/// Holds a store's lock for a scope.
class StoreLock {
public:
    explicit StoreLock(CXCriticalSection* lock) : held(lock) { held->Lock(); }
    ~StoreLock() { held->Unlock(); }
    StoreLock(StoreLock const&) = delete;
    StoreLock& operator=(StoreLock const&) = delete;

private:
    CXCriticalSection* held;
};

/// Holds the locks of two stores, the one at the lower address first whoever is the source: two threads that work on
/// the same two in opposite directions would otherwise wait for each other.
class TwoStoreLocks {
public:
    TwoStoreLocks(CXCriticalSection* a, CXCriticalSection* b)
        : first(std::min(a, b, std::less<>())), second(std::max(a, b, std::less<>())) {}

private:
    StoreLock first;
    StoreLock second;
};

/// What a chunk takes besides its data.
inline constexpr unsigned int ChunkHeaderSize = sizeof(CustomPrivateData);

/// The chunk at an offset of a run of bytes, or null unless it lies there whole. In 64 bits, since a size from outside
/// can be anything.
inline CustomPrivateData* WholeChunk(unsigned char* bytes, unsigned int offset, unsigned int size) {
    if (offset > size || size - offset < ChunkHeaderSize)
        return nullptr;
    auto* const chunk = reinterpret_cast<CustomPrivateData*>(bytes + offset);
    return chunk->size <= size - offset - ChunkHeaderSize ? chunk : nullptr;
}

} // namespace detail

inline CustomPrivateData* CCustomData::ChunkAt(unsigned int offset) const {
    return reinterpret_cast<CustomPrivateData*>(buffer + offset);
}

inline CustomPrivateData* CCustomData::GetFirstChunk() const {
    return size != 0 ? ChunkAt(0) : nullptr;
}

/// The chunk behind another one; null at the end. There are whole chunks only: see UpdateOffsetMap.
inline CustomPrivateData* CCustomData::GetNextChunk(CustomPrivateData const* chunk) const {
    unsigned char const* const next = chunk->Data() + chunk->size;
    return next != buffer + size ? ChunkAt(static_cast<unsigned int>(next - buffer)) : nullptr;
}

/// The chunk that the index has under an id. After ChangeID it may bear another one.
inline CustomPrivateData* CCustomData::FindChunk(unsigned int id) const {
    unsigned int const* const offset = offsetMap ? offsetMap->Find(id) : nullptr;
    return offset && *offset != Nowhere ? ChunkAt(*offset) : nullptr;
}

/// The chunk of an id for who reads it.
inline CustomPrivateData const* CCustomData::ReachChunk(unsigned int id) const {
    CustomPrivateData const* const chunk = FindChunk(id);
    return chunk && chunk->id == id ? chunk : nullptr;
}

/// A legacy store has lost the kinds of its values, so any will do there.
inline unsigned int CCustomData::WantedKind(unsigned int kind) const {
    return stringFormat != 0 ? static_cast<unsigned int>(CustomDataBlank) : kind;
}
