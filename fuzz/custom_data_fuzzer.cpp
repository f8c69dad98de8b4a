// SPDX-License-Identifier: MIT
// Any bytes as a custom data stream: what loads is read, changed, saved and loaded again.
#include "zeltools/foundation/xexception.h"
#include "zeltools/persistence/custom_data.h"

#include <cstdint>
#include <cstdlib>

namespace {

void ReadAll(CCustomData& data) {
    CXTString<char16_t> text;
    CXTString<char> narrow;
    CXArray<CXTString<char16_t>> list(false);
    CCustomData nested;
    unsigned int kind = 0;
    for (unsigned int index = 0; index < 64; ++index) {
        unsigned int const id = data.GetIDByIndex(index, kind);
        int number = 0;
        unsigned int count = 0;
        CXTime time;
        data.GetInt(id, number);
        data.GetString(id, text);
        data.GetStringW(id, text);
        data.GetStringA(id, narrow);
        data.GetStringArray(id, list);
        data.GetArray(id, count, 2);
        data.GetChecksum(id);
        data.GetCustomData(id, nested);
        try {
            data.GetUTCTime(id, time);
        } catch (CXException* e) {
            e->Delete();
        }
    }
    data.DumpCustomData(true, 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t byteCount) {
    CCustomData data;
    if (data.SerializeFromData(bytes, byteCount) != data.HasData())
        std::abort();
    unsigned int size = 0;
    data.GetData(size);
    if (size > byteCount)
        std::abort(); // something that was not there
    ReadAll(data);

    // Once nothing stands twice, a store comes back as it was.
    CCustomData clean;
    clean.Copy(&data, CCustomData::CopyKeep);
    unsigned long long savedSize = 0;
    void* const saved = clean.SerializeToData(savedSize);
    CCustomData again;
    if (again.SerializeFromData(saved, savedSize) != clean.HasData() || !again.IsEqual(clean))
        std::abort();
    CCustomData::Free(saved);

    // Changes in the middle of what came from outside.
    unsigned int kind = 0;
    unsigned int const first = data.GetIDByIndex(0, kind);
    unsigned int const second = data.GetIDByIndex(1, kind);
    data.ChangeID(second, first);
    data.RemoveCustom(first);
    data.SetInt(second, 1);
    data.FreeExtra();
    data.SetBinary(first, bytes, static_cast<unsigned int>(byteCount));
    ReadAll(data);
    return 0;
}
