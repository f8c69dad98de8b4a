// SPDX-License-Identifier: MIT
// The legacy generations, whose records know no kinds and stand fifteen bytes apart: twelve before the data and three
// of filler after them.

#include "zeltools/persistence/custom_data.h"
#include "zeltools/persistence/custom_data_private.h"

using detail::StoreLock;

void CCustomData::ConvertPreviousData(CCustomData& target, CustomPrivateDataOld const* records, unsigned int size) {
    constexpr unsigned long long headerSize = sizeof(CustomPrivateDataOld);
    constexpr unsigned long long fillerSize = 3;
    StoreLock const hold(&target.threadLock);
    auto const* const area = reinterpret_cast<unsigned char const*>(records);
    // A record that is not there whole ends the walk; what came before it is kept. The filler of the last one need not
    // be there.
    for (unsigned long long offset = 0; offset + headerSize <= size;) {
        auto const* const record = reinterpret_cast<CustomPrivateDataOld const*>(area + offset);
        if (record->size > size - offset - headerSize)
            return;
        target.SetCustom(record->id, record->Data(), record->size, CustomDataBlank);
        if (record->continues == 0)
            return;
        offset += headerSize + record->size + fillerSize;
    }
}
