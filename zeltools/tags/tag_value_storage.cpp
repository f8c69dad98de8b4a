// SPDX-License-Identifier: MIT
// A tag's value to and from a store, and from a plain pointer.
#include "zeltools/foundation/xexception.h"
#include "zeltools/process/xsingle_lock.h"
#include "zeltools/tags/tag_value.h"

#include <limits>

namespace {

/// Reads as many whole elements as a value has bytes for.
template <class Array>
bool ReadElements(CCustomData const& data, unsigned int id, Array& elements) {
    constexpr unsigned int elementSize = 4;
    unsigned int const size = data.GetDataSize(id);
    if (size < elementSize)
        return false;
    elements.SetSize(static_cast<int>((size - 1) / elementSize + 1)); // with room for the rest of an unfinished one
    bool const isRead = data.GetBinary(id, elements.GetData(), size);
    elements.SetSize(isRead ? static_cast<int>(size / elementSize) : 0);
    return isRead;
}

template <class Array>
bool WriteElements(CCustomData& data, unsigned int id, Array const* elements) {
    if (!elements || elements->IsEmpty()) {
        data.RemoveCustom(id);
        return true;
    }
    std::size_t const size = static_cast<std::size_t>(elements->GetSize()) * sizeof(*elements->GetData());
    if (size > std::numeric_limits<unsigned int>::max())
        return false;
    data.SetBinary(id, elements->GetData(), static_cast<unsigned int>(size));
    return true;
}

/// Reads a broken-down date, which from outside may be none.
bool ReadDate(CCustomData const& data, unsigned int id, CXTime& date) {
    SYSTEMTIME record;
    if (!data.GetBinary(id, &record, sizeof(record)))
        return false;
    try {
        return xTimeFromSystemTime(date, record, -1);
    } catch (CXInvalidArgException* exception) {
        exception->Delete();
        return false;
    }
}

/// Reads a nested store. One of the older form is rewritten where it lies, so that is done in a copy; the others are
/// only read, in spite of the operation's form.
bool ReadStore(CCustomData const& data, unsigned int id, CCustomData& target) {
    if (data.GetDataKindOf(id) != CustomDataNestedOld)
        return const_cast<CCustomData&>(data).GetCustomData(id, target);
    CCustomData copy(data);
    return copy.GetCustomData(id, target);
}

/// Reads the bytes of a value, of any kind.
bool ReadInfo(CCustomData const& data, unsigned int id, CCustomData& target) {
    CCustomData info; // between the two, so that nobody holds the locks of both
    {
        CXSingleLock const hold(data.GetThreadLock(), true);
        unsigned int size = 0;
        void const* const bytes = data.GetCustomPtr(id, size);
        if (!bytes)
            return false;
        info.SetBinary(CTagValue::CustomInfoId, bytes, size);
    }
    target = info;
    return true;
}

} // namespace

int CTagValue::GetValueFromVoid(void const* source, _TAGDATA_INFO sourceType) {
    if (!source)
        return 0;
    // The source may be an object of this value, or lie in one, so it is read before they are emptied.
    unsigned int const base = sourceType & TAGDATA_BASE_MASK;
    if (base == TAGDATA_TEXT) {
        CXTString<char16_t> const copy(*static_cast<CXTString<char16_t> const*>(source));
        Init();
        GetText() = copy;
    } else if (base == TAGDATA_UINT) {
        unsigned int const value = *static_cast<unsigned int const*>(source);
        Init();
        number = value;
    } else {
        Init();
        return 0;
    }
    type = static_cast<_TAGDATA_INFO>(sourceType & TAGDATA_MASK);
    return 1;
}

bool CTagValue::ReadFrom(CCustomData const& data, unsigned int id) {
    switch (type & TAGDATA_BASE_MASK) {
    case TAGDATA_TEXT: return data.GetString(id, GetText());
    case TAGDATA_UINT: {
        unsigned int value = 0;
        bool const isRead = data.GetUInt(id, value);
        number = value;
        return isRead;
    }
    case TAGDATA_FLOAT: return data.GetFloat(id, real);
    case TAGDATA_DATE: return ReadDate(data, id, GetDate());
    case TAGDATA_CUSTOM:
        return type == TAGDATA_CUSTOMINFO ? ReadInfo(data, id, GetCustomData()) : ReadStore(data, id, GetCustomData());
    case TAGDATA_STRINGS: return data.GetStringArray(id, Strings()) != 0;
    case TAGDATA_UINTS: return ReadElements(data, id, UInts());
    case TAGDATA_FLOATS: return ReadElements(data, id, Floats());
    default: return false;
    }
}

int CTagValue::GetValueFromData(CCustomData const& data, unsigned int id, _TAGDATA_INFO storedType) {
    if (&data == custom) {
        CCustomData const copy(data); // Init empties the own store
        return GetValueFromData(copy, id, storedType);
    }
    Init();
    type = static_cast<_TAGDATA_INFO>(storedType & TAGDATA_MASK);
    if (!ReadFrom(data, id))
        type = TAGDATA_NONE;
    return type != TAGDATA_NONE;
}

int CTagValue::SetValueToData(CCustomData& data, unsigned int id) const {
    switch (type & TAGDATA_BASE_MASK) {
    case TAGDATA_TEXT: data.SetString(id, text ? *text : CXTString<char16_t>()); return 1;
    case TAGDATA_UINT: data.SetUInt(id, GetUInt()); return 1;
    case TAGDATA_FLOAT: data.SetFloat(id, real); return 1;
    case TAGDATA_DATE: {
        SYSTEMTIME record;
        if (!xTimeGetAsSystemTime(record, date ? *date : CXTime()))
            return 0;
        data.SetBinary(id, &record, sizeof(record));
        return 1;
    }
    case TAGDATA_CUSTOM: WriteStore(data, id); return 1;
    case TAGDATA_STRINGS:
        if (strings && !strings->IsEmpty())
            data.SetStringArray(id, *strings);
        else
            data.RemoveCustom(id);
        return 1;
    case TAGDATA_UINTS: return WriteElements(data, id, uints);
    case TAGDATA_FLOATS: return WriteElements(data, id, floats);
    default: return 0;
    }
}

void CTagValue::WriteStore(CCustomData& data, unsigned int id) const {
    if (!custom)
        data.RemoveCustom(id);
    else if (type != TAGDATA_CUSTOMINFO)
        data.SetCustomData(id, *custom);
    else {
        unsigned int size = 0;
        void const* const bytes = custom->GetCustomPtr(CustomInfoId, size);
        if (bytes)
            data.SetBinary(id, bytes, size);
        else
            data.RemoveCustom(id);
    }
}
