// SPDX-License-Identifier: MIT
#include "media/metadata.h"

#include <zeltools/foundation/four_cc.h>
#include <zeltools/persistence/custom_data_kinds.h>

namespace {

using Text = CXTString<char16_t>;

constexpr unsigned int NameKey = FourCC("NAME");
constexpr unsigned int ValueKey = FourCC("VALU");

/// The store under an id; an empty one when there is none.
CCustomData EntryOf(CCustomData const& store, unsigned int id) {
    CCustomData entry;
    unsigned int size = 0;
    void const* const bytes = store.GetCustomPtr(id, size);
    entry.SetData(bytes, size);
    return entry;
}

Text ValueText(CCustomData const& entry) {
    Text text;
    long long integer = 0;
    double number = 0;
    if (entry.GetLongInt(ValueKey, integer, 0)) {
        text.Format(u"%I64d", integer);
    } else if (entry.GetDouble(ValueKey, number, 0)) {
        text.Format(u"%g", number);
    } else if (entry.GetDataKindOf(ValueKey) == CustomDataBinary) {
        text.Format(u"[%u bytes]", entry.GetDataSize(ValueKey));
    } else {
        entry.GetString(ValueKey, text, Text());
    }
    return text;
}

} // namespace

void CMetadata::SetText(Text const& name, Text const& value) {
    CCustomData entry;
    entry.SetString(ValueKey, value);
    Put(name, entry);
}

void CMetadata::SetInteger(Text const& name, long long value) {
    CCustomData entry;
    entry.SetLongInt(ValueKey, value);
    Put(name, entry);
}

void CMetadata::SetNumber(Text const& name, double value) {
    CCustomData entry;
    entry.SetDouble(ValueKey, value);
    Put(name, entry);
}

void CMetadata::SetBinary(Text const& name, void const* data, unsigned int size) {
    CCustomData entry;
    entry.SetBinary(ValueKey, data, size);
    Put(name, entry);
}

void CMetadata::Put(Text const& name, CCustomData& entry) {
    entry.SetString(NameKey, name);
    unsigned int const known = FindID(name);
    unsigned int const id = known != 0 ? known : store.GetIDCount() + 1;
    store.SetCustomData(id, entry);
    idOfName.Insert(CExLCString(name), id);
}

bool CMetadata::GetAt(unsigned int index, Text& name, Text& value) const {
    if (index >= GetCount()) {
        return false;
    }
    CCustomData const entry = EntryOf(store, index + 1);
    entry.GetString(NameKey, name, Text());
    value = ValueText(entry);
    return true;
}

bool CMetadata::IsTextAt(unsigned int index) const {
    return index < GetCount() && EntryOf(store, index + 1).GetDataKindOf(ValueKey) == CustomDataWide;
}

CXTString<char16_t> CMetadata::GetText(Text const& name) const {
    return ValueText(EntryOf(store, FindID(name)));
}

unsigned int CMetadata::FindID(Text const& name) const {
    unsigned int const* const id = idOfName.Find(CExLCString(name));
    return id ? *id : 0;
}
