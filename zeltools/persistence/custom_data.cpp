// SPDX-License-Identifier: MIT
// The chunks of a store and the index over them.

#include "zeltools/persistence/custom_data.h"

#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/foundation/xexception.h"
#include "zeltools/persistence/custom_data_private.h"
#include "zeltools/platform/clock.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

using detail::ChunkHeaderSize;
using detail::StoreLock;

namespace {

/// The first allocation: enough for most settings of a dialog.
constexpr unsigned int FirstCapacity = 128;

constexpr unsigned int FirstIndexSize = 23;

constexpr unsigned int LargestSize = 0xFFFFFFFF;

constexpr double Growth = 1.5;

} // namespace

CCustomData::CCustomData() {
    Touch();
}

CCustomData::~CCustomData() {
    delete offsetMap;
    Free(buffer);
}

void* CCustomData::Alloc(unsigned int size) {
    return std::malloc(size);
}

void CCustomData::Free(void* data) {
    std::free(data);
}

void CCustomData::Touch() {
    timeStamp.store(platform::GetTickCount64(), std::memory_order_relaxed);
}

bool CCustomData::IsOwnMemory(void const* data) const {
    std::less<void const*> const before;
    return buffer && !before(data, buffer) && before(data, buffer + capacity);
}

// ---- The index ----

bool CCustomData::EnterOffset(unsigned int id, unsigned int offset) {
    try {
        if (!offsetMap)
            offsetMap = new OffsetMap(FirstIndexSize);
        offsetMap->Insert(id, offset);
        return true;
    } catch (CXException* e) {
        e->Delete();
    } catch (std::bad_alloc const&) {
    }
    return false;
}

/// Builds the index over bytes from outside, and cuts off what follows the last whole chunk.
/// @param count  How many chunks to expect; 0 to count them, as where there cannot be so many or turn out to be more.
void CCustomData::UpdateOffsetMap(unsigned int count) {
    if (count == 0 || count > size / ChunkHeaderSize) {
        count = 0;
        unsigned int offset = 0;
        for (CustomPrivateData const* chunk; (chunk = detail::WholeChunk(buffer, offset, size)) != nullptr; ++count)
            offset += ChunkHeaderSize + chunk->size;
    }
    delete std::exchange(offsetMap, nullptr);
    renamed = false;
    // A slot more than twice the count never has to grow, which would hold old and new slots together.
    offsetMap = new OffsetMap(2 * count + 2);
    unsigned int offset = 0;
    for (; CustomPrivateData const* const chunk = detail::WholeChunk(buffer, offset, size); --count) {
        if (count == 0)
            return UpdateOffsetMap(0);
        offsetMap->Insert(chunk->id, offset);
        offset += ChunkHeaderSize + chunk->size;
    }
    size = offset;
}

/// Takes over bytes from outside, in an empty store. They belong to it even where this throws.
void CCustomData::TakeBuffer(void* data, unsigned int byteCount, unsigned int expectedCount) {
    buffer = static_cast<unsigned char*>(data);
    size = capacity = byteCount;
    try {
        UpdateOffsetMap(expectedCount);
    } catch (...) {
        Clear();
        throw;
    }
    if (size == 0)
        Clear();
}

/// Marks the ids whose offset is about to lose its meaning as known but nowhere. Only ChangeID leaves such ids behind:
/// all others have a chunk that bears them, and that is entered anew.
void CCustomData::ForgetRenamed(unsigned int firstLost) {
    for (unsigned int position = offsetMap->GetFirst(); position != OffsetMap::NoPosition;) {
        unsigned int* const offset = offsetMap->GetNext(position);
        if (*offset >= firstLost)
            *offset = Nowhere;
    }
}

// ---- The chunks ----

bool CCustomData::ReserveBytes(unsigned int needed) {
    if (buffer && needed <= capacity)
        return true;
    unsigned int const wanted =
        buffer ? static_cast<unsigned int>(std::min(needed * Growth, static_cast<double>(LargestSize)))
               : std::max(needed, FirstCapacity);
    void* const block = std::realloc(buffer, wanted);
    if (!block)
        return false;
    buffer = static_cast<unsigned char*>(block);
    capacity = wanted;
    return true;
}

/// Appends a chunk whose data the caller fills in; null where there is no memory for it.
CustomPrivateData* CCustomData::GetNewChunkEntry(unsigned int id, unsigned int chunkSize, unsigned int kind) {
    unsigned long long const newSize = 0ull + size + ChunkHeaderSize + chunkSize;
    if (newSize > LargestSize || !ReserveBytes(static_cast<unsigned int>(newSize)) || !EnterOffset(id, size))
        return nullptr;
    CustomPrivateData* const chunk = ChunkAt(size);
    *chunk = {id, chunkSize, kind};
    size = static_cast<unsigned int>(newSize);
    Touch();
    return chunk;
}

/// The chunk into which a value of an id goes: the present one where the size is the same, else a new one. Null for a
/// size of 0, which only removes, and where there is no memory.
CustomPrivateData* CCustomData::PlaceChunk(unsigned int id, unsigned int chunkSize, unsigned int kind) {
    if (unsigned int const* const offset = offsetMap ? offsetMap->Find(id) : nullptr) {
        CustomPrivateData* const present = *offset != Nowhere ? ChunkAt(*offset) : nullptr;
        if (present && present->size == chunkSize && chunkSize != 0) {
            present->kind = kind;
            return present;
        }
        RemoveChunk(present, id);
    }
    return chunkSize != 0 ? GetNewChunkEntry(id, chunkSize, kind) : nullptr;
}

/// Removes what the index has under an id.
/// @param chunk  What FindChunk gave for it, null too.
void CCustomData::RemoveChunk(CustomPrivateData* chunk, unsigned int id) {
    offsetMap->Remove(id);
    if (chunk) {
        unsigned char* const gap = reinterpret_cast<unsigned char*>(chunk);
        unsigned char* const tail = chunk->Data() + chunk->size;
        unsigned int const offset = static_cast<unsigned int>(gap - buffer);
        unsigned int const tailSize = static_cast<unsigned int>(buffer + size - tail);
        if (tailSize == 0 && offset == 0) {
            RemoveAll();
            return;
        }
        std::memmove(gap, tail, tailSize);
        size = offset + tailSize;
        if (renamed)
            ForgetRenamed(offset);
        // An id that cannot be entered for want of memory was renamed, and so is only not found again.
        for (unsigned int next = offset; next != size; next += ChunkHeaderSize + ChunkAt(next)->size)
            static_cast<void>(EnterOffset(ChunkAt(next)->id, next));
    }
    Touch();
}

bool CCustomData::ReplaceCustom(unsigned int id, void const* data, unsigned int dataSize, unsigned int kind) {
    StoreLock const hold(&threadLock);
    CustomPrivateData* const chunk = dataSize != 0 ? FindChunk(id) : nullptr;
    if (!chunk || chunk->size != dataSize)
        return false;
    chunk->kind = kind;
    if (data)
        std::memmove(chunk->Data(), data, dataSize);
    return true;
}

void CCustomData::SetCustom(unsigned int id, void const* data, unsigned int dataSize, unsigned int kind) {
    StoreLock const hold(&threadLock);
    if (IsOwnMemory(data) && dataSize != 0) {
        // Making room moves the bytes that are to be stored.
        std::unique_ptr<void, decltype(&Free)> const copy(Alloc(dataSize), Free);
        if (copy) {
            std::memcpy(copy.get(), data, dataSize);
            SetCustom(id, copy.get(), dataSize, kind);
        }
        return;
    }
    CustomPrivateData* const chunk = PlaceChunk(id, dataSize, kind);
    if (chunk && data)
        std::memcpy(chunk->Data(), data, dataSize);
}

unsigned int CCustomData::GetCustom(unsigned int id, void* target, unsigned int dataSize, unsigned int kind) const {
    StoreLock const hold(&threadLock);
    CustomPrivateData const* const chunk = ReachChunk(id);
    unsigned int const wanted = WantedKind(kind);
    if (!chunk || chunk->size != dataSize || (wanted != CustomDataBlank && chunk->kind != wanted))
        return 0;
    if (dataSize != 0)
        std::memcpy(target, chunk->Data(), dataSize);
    return chunk->kind;
}

bool CCustomData::RemoveCustom(unsigned int id) {
    StoreLock const hold(&threadLock);
    if (!offsetMap || !offsetMap->Find(id))
        return false;
    RemoveChunk(FindChunk(id), id);
    return true;
}

void CCustomData::Clear() {
    delete std::exchange(offsetMap, nullptr);
    Free(std::exchange(buffer, nullptr));
    size = capacity = stringFormat = 0;
    renamed = false;
}

void CCustomData::RemoveAll() {
    StoreLock const hold(&threadLock);
    Clear();
    Touch();
}

bool CCustomData::ChangeID(unsigned int oldId, unsigned int newId) {
    StoreLock const hold(&threadLock);
    RemoveCustom(newId);
    if (!offsetMap || !offsetMap->Find(oldId))
        return false;
    if (CustomPrivateData* const chunk = FindChunk(oldId)) {
        chunk->id = newId;
        renamed = true;
    }
    return true;
}

// ---- Asking ----

unsigned int CCustomData::GetDataSize(unsigned int id) const {
    StoreLock const hold(&threadLock);
    CustomPrivateData const* const chunk = ReachChunk(id);
    return chunk ? chunk->size : 0;
}

unsigned int CCustomData::GetDataKindOf(unsigned int id) const {
    StoreLock const hold(&threadLock);
    CustomPrivateData const* const chunk = ReachChunk(id);
    return chunk ? chunk->kind : 0;
}

bool CCustomData::HasData() const {
    StoreLock const hold(&threadLock);
    return size != 0;
}

bool CCustomData::HasData(unsigned int id) const {
    StoreLock const hold(&threadLock);
    return offsetMap && offsetMap->IsFound(id);
}

unsigned int CCustomData::GetIDCount() const {
    StoreLock const hold(&threadLock);
    return offsetMap ? offsetMap->GetCount() : 0;
}

unsigned int CCustomData::GetIDByIndex(unsigned int index, unsigned int& kind) const {
    StoreLock const hold(&threadLock);
    CustomPrivateData const* chunk = GetFirstChunk();
    for (; chunk && index != 0; --index)
        chunk = GetNextChunk(chunk);
    kind = chunk ? chunk->kind : 0;
    return chunk ? chunk->id : 0xFFFFFFFF;
}

unsigned int CCustomData::GetChecksum(unsigned int id) const {
    StoreLock const hold(&threadLock);
    unsigned int hash = HashTextStart;
    if (CustomPrivateData const* const chunk = ReachChunk(id))
        for (unsigned int i = chunk->size; i-- != 0;)
            hash = (hash ^ static_cast<unsigned int>(static_cast<signed char>(chunk->Data()[i]))) * 16777619u;
    return hash;
}

// ---- The bytes ----

void const* CCustomData::GetData(unsigned int& dataSize) const {
    dataSize = size;
    return buffer;
}

void const* CCustomData::GetCustomPtr(unsigned int id, unsigned int& dataSize) const {
    CustomPrivateData const* const chunk = ReachChunk(id);
    dataSize = chunk ? chunk->size : 0;
    return chunk ? chunk->Data() : nullptr;
}

void CCustomData::SetData(void const* data, unsigned int dataSize) {
    StoreLock const hold(&threadLock);
    bool const any = data && dataSize != 0;
    void* const copy = any ? Alloc(dataSize) : nullptr;
    if (copy)
        std::memcpy(copy, data, dataSize); // before the old content goes, of which the data may be a part
    RemoveAll();
    if (any && !copy)
        detail::ThrowMemory();
    if (copy)
        TakeBuffer(copy, dataSize, 0);
}

void* CCustomData::Detach(unsigned int& dataSize) {
    StoreLock const hold(&threadLock);
    FreeExtra();
    dataSize = size;
    void* const data = std::exchange(buffer, nullptr);
    RemoveAll();
    return data;
}

void CCustomData::Attach(void* data, unsigned int dataSize) {
    StoreLock const hold(&threadLock);
    RemoveAll();
    if (data && dataSize != 0)
        TakeBuffer(data, dataSize, 0);
    else
        Free(data);
}

void CCustomData::FreeExtra() {
    StoreLock const hold(&threadLock);
    if (capacity <= size)
        return;
    if (size == 0) {
        delete std::exchange(offsetMap, nullptr);
        Free(std::exchange(buffer, nullptr));
        capacity = 0;
    } else if (void* const block = std::realloc(buffer, size)) {
        buffer = static_cast<unsigned char*>(block);
        capacity = size;
    }
}
