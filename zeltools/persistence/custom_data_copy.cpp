// SPDX-License-Identifier: MIT
// Operations on two stores: copying, comparing, nesting.

#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/persistence/custom_data.h"
#include "zeltools/persistence/custom_data_class.h"
#include "zeltools/persistence/custom_data_private.h"

#include <cstdarg>
#include <memory>

using detail::TwoStoreLocks;

CCustomData::CCustomData(CCustomData const& other) {
    try {
        *this = other;
    } catch (...) {
        Clear();
        throw;
    }
}

CCustomData& CCustomData::operator=(CCustomData const& other) {
    TwoStoreLocks const hold(&threadLock, &other.threadLock);
    if (this == &other)
        return *this;
    RemoveAll();
    if (!other.buffer)
        return *this;
    // A buffer that holds nothing yet is none: an empty store has no index to copy either.
    if (other.size != 0) {
        std::unique_ptr<OffsetMap> map(new OffsetMap(*other.offsetMap));
        buffer = static_cast<unsigned char*>(Alloc(other.size));
        if (!buffer)
            detail::ThrowMemory();
        std::memcpy(buffer, other.buffer, other.size);
        size = capacity = other.size;
        offsetMap = map.release();
    }
    stringFormat = other.stringFormat;
    renamed = other.renamed;
    timeStamp.store(other.GetTimeStamp(), std::memory_order_relaxed);
    return *this;
}

CCustomData* CCustomData::Copy() const {
    // Not under the lock, which must not be taken before that of the copy.
    std::unique_ptr<CCustomData> copy(new CCustomData(*this));
    return copy->buffer ? copy.release() : nullptr;
}

void CCustomData::Copy(CCustomData const* source, unsigned int flags) {
    if (!source || (flags & (CopySkipExisting | CopyKeep)) == 0)
        return;
    TwoStoreLocks const hold(&threadLock, &source->threadLock);
    if ((flags & CopyKeep) == 0)
        RemoveAll();
    if (source == this)
        return;
    for (CustomPrivateData const* chunk = source->GetFirstChunk(); chunk; chunk = source->GetNextChunk(chunk)) {
        if ((flags & CopySkipExisting) != 0 && HasData(chunk->id))
            continue;
        unsigned int kind = chunk->kind;
        if (kind == CustomDataBlank) {
            CustomPrivateData const* const present = FindChunk(chunk->id);
            if (present)
                kind = present->kind;
            else if (stringFormat != source->stringFormat)
                continue;
        }
        SetCustom(chunk->id, chunk->Data(), chunk->size, kind);
    }
}

unsigned int CCustomData::CopyID(CCustomData const* source, unsigned int id, ...) {
    if (!source)
        return 0;
    TwoStoreLocks const hold(&threadLock, &source->threadLock);
    unsigned int copied = 0;
    std::va_list ids;
    va_start(ids, id);
    for (; id != 0; id = va_arg(ids, unsigned int)) {
        CustomPrivateData const* const chunk = source->ReachChunk(id);
        if (!chunk || chunk->size == 0)
            continue;
        SetCustom(id, chunk->Data(), chunk->size, chunk->kind);
        ++copied;
    }
    va_end(ids);
    return copied;
}

bool CCustomData::IsEqual(CCustomData const& other) const {
    TwoStoreLocks const hold(&threadLock, &other.threadLock);
    if (!offsetMap || !other.offsetMap)
        return offsetMap == other.offsetMap;
    if (GetIDCount() != other.GetIDCount())
        return false;
    // By the ids in the chunks: the index does not know those that were changed.
    CHashMap<unsigned int, unsigned int, CustomPrivateData const*> chunks(2 * GetIDCount() + 2);
    for (CustomPrivateData const* chunk = GetFirstChunk(); chunk; chunk = GetNextChunk(chunk))
        chunks.Insert(chunk->id, chunk);
    for (CustomPrivateData const* chunk = other.GetFirstChunk(); chunk; chunk = other.GetNextChunk(chunk)) {
        CustomPrivateData const* const* const mine = chunks.Find(chunk->id);
        if (!mine || (*mine)->size != chunk->size || (*mine)->kind != chunk->kind ||
            std::memcmp((*mine)->Data(), chunk->Data(), chunk->size) != 0)
            return false;
    }
    return true;
}

// ---- Nested stores ----

void CCustomData::SetCustomData(unsigned int id, CCustomData const& value) {
    TwoStoreLocks const hold(&threadLock, &value.threadLock);
    SetCustom(id, value.buffer, value.size, CustomDataNested);
}

void CCustomData::AddToCustomData(unsigned int id, CCustomData const& data, int) {
    SetCustomData(id, data);
}

bool CCustomData::GetCustomData(unsigned int id, CCustomData& target) {
    TwoStoreLocks const hold(&threadLock, &target.threadLock);
    target.RemoveAll();
    CustomPrivateData const* const chunk = ReachChunk(id);
    if (!chunk || chunk->size == 0)
        return false;
    bool const isLegacy = chunk->kind == CustomDataBlank && stringFormat != 0;
    if (!isLegacy && chunk->kind != CustomDataNested && chunk->kind != CustomDataNestedOld)
        return false;
    if (isLegacy) {
        ConvertPreviousData(target, reinterpret_cast<CustomPrivateDataOld const*>(chunk->Data()), chunk->size);
        target.stringFormat = stringFormat;
        return true;
    }
    if (chunk->kind == CustomDataNested) {
        target.SetData(chunk->Data(), chunk->size);
        return true;
    }
    constexpr unsigned int headerSize = 20;
    constexpr unsigned int formatOffset = 12;
    unsigned int format = 0;
    if (chunk->size < headerSize)
        return false;
    std::memcpy(&format, chunk->Data() + formatOffset, sizeof(format));
    if (format != 0)
        return false;
    SetCustom(id, chunk->Data() + headerSize, chunk->size - headerSize, CustomDataNested);
    // Still in the old form where there is no memory.
    return GetDataKindOf(id) == CustomDataNested && GetCustomData(id, target);
}

void CCustomData::SetCustomClass(unsigned int id, CCustomDataClass const& object) {
    CCustomData state;
    object.WriteCustomData(state);
    SetCustomData(id, state);
}

bool CCustomData::GetCustomClass(unsigned int id, CCustomDataClass& object) {
    CCustomData state;
    if (GetCustomData(id, state))
        return object.ReadCustomData(state);
    object.ResetCustomData();
    return false;
}
