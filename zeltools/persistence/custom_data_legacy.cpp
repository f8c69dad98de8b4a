// SPDX-License-Identifier: MIT
// The legacy generations, whose records know no kinds and stand fifteen bytes apart: twelve before the data and three
// of filler after them.

#include "zeltools/foundation/xexception.h"
#include "zeltools/persistence/custom_data.h"
#include "zeltools/persistence/custom_data_private.h"

#include <new>

using detail::ChunkHeaderSize;
using detail::StoreLock;

namespace {

/// Calls `visit(record)` for each record. One that is not there whole ends the walk; the filler of the last one need
/// not be there.
template <class Visit>
void ForEachRecord(CustomPrivateDataOld const* records, unsigned int size, Visit const& visit) {
    constexpr unsigned long long headerSize = sizeof(CustomPrivateDataOld);
    constexpr unsigned long long fillerSize = 3;
    auto const* const area = reinterpret_cast<unsigned char const*>(records);
    for (unsigned long long offset = 0; offset + headerSize <= size;) {
        auto const* const record = reinterpret_cast<CustomPrivateDataOld const*>(area + offset);
        if (record->size > size - offset - headerSize)
            return;
        visit(*record);
        if (record->continues == 0)
            return;
        offset += headerSize + record->size + fillerSize;
    }
}

} // namespace

void CCustomData::ConvertPreviousData(CCustomData& target, CustomPrivateDataOld const* records, unsigned int size) {
    StoreLock const hold(&target.threadLock);
    unsigned int count = 0;
    unsigned int byteCount = 0; // below `size`, since a chunk is shorter than its record
    ForEachRecord(records, size, [&](CustomPrivateDataOld const& record) {
        if (record.size == 0)
            return;
        ++count;
        byteCount += ChunkHeaderSize + record.size;
    });
    if (count == 0)
        return;
    target.Expect(count, byteCount);
    ForEachRecord(records, size, [&](CustomPrivateDataOld const& record) {
        CustomPrivateData const* const present = target.FindChunk(record.id);
        if (present && present->size != record.size)
            target.offsetMap->Remove(record.id);
        target.SetCustom(record.id, record.Data(), record.size, CustomDataBlank);
    });
    target.RemoveUnknownChunks();
}

/// Removes the chunks that the index does not know, in one pass: one by one, each would move all that follow it.
void CCustomData::RemoveUnknownChunks() {
    unsigned int kept = 0;
    for (unsigned int offset = 0; offset != size;) {
        CustomPrivateData const* const chunk = ChunkAt(offset);
        unsigned int const length = ChunkHeaderSize + chunk->size;
        if (unsigned int* const known = offsetMap->Find(chunk->id); known && *known == offset) {
            *known = kept;
            std::memmove(buffer + kept, chunk, length);
            kept += length;
        }
        offset += length;
    }
    size = kept;
    if (size == 0)
        RemoveAll();
}

/// Makes room at once for what an empty store is about to get: buffer and index that grow hold the old and the new
/// together, which many small records would drive to several times their size.
void CCustomData::Expect(unsigned int count, unsigned int byteCount) {
    if (offsetMap || !ReserveBytes(byteCount))
        return;
    try {
        offsetMap = new OffsetMap(2 * count + 2);
    } catch (CXException* e) {
        e->Delete(); // then it has to grow
    } catch (std::bad_alloc const&) {
    }
}
