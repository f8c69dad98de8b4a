// SPDX-License-Identifier: MIT
#include "zeltools/tags/tag_value.h"

namespace {

/// The object that a pointer owns, made where there is none.
template <class T>
T& Existing(T*& object) {
    if (!object)
        object = new T;
    return *object;
}

} // namespace

CTagValue::~CTagValue() {
    delete custom;
    delete strings;
    delete uints;
    delete floats;
    delete text;
    delete date;
}

void CTagValue::Init() {
    type = TAGDATA_NONE;
    if (uints)
        uints->RemoveAll();
    if (floats)
        floats->RemoveAll();
    if (custom)
        custom->RemoveAll();
    if (strings)
        strings->RemoveAll();
    if (text)
        text->Empty();
}

void CTagValue::InitType(_TAGDATA_INFO newType) {
    type = static_cast<_TAGDATA_INFO>(newType & TAGDATA_MASK);
    // A type with several of these bits is held by the first object in this order.
    if (type & TAGDATA_TEXT)
        GetText().Empty();
    else if (type & TAGDATA_DATE)
        GetDate();
    else if (type & TAGDATA_STRINGS)
        Strings().RemoveAll();
    else if (type & TAGDATA_CUSTOM)
        GetCustomData().RemoveAll();
    else if (type & TAGDATA_UINTS)
        UInts().RemoveAll();
    else if (type & TAGDATA_FLOATS)
        Floats().RemoveAll();
    else
        type = TAGDATA_NONE;
}

// The setters of objects assign to the object as it stands, without emptying it first: the new content may be, or lie
// in, the old one.

void CTagValue::SetText(CXTString<char16_t> const& value) {
    GetText() = value;
    type = TAGDATA_TEXT;
}

void CTagValue::SetText(char16_t const* value) {
    GetText() = value;
    type = TAGDATA_TEXT;
}

void CTagValue::SetFilename(CXTString<char16_t> const& value) {
    GetText() = value;
    type = TAGDATA_FILENAME;
}

void CTagValue::AddText(CXTString<char16_t> const& value) {
    if (type & TAGDATA_TEXT)
        GetText() += value;
    else
        SetText(value);
}

CXTString<char16_t>& CTagValue::GetText() {
    return Existing(text);
}

void CTagValue::TrimText() {
    if (type & TAGDATA_TEXT && text)
        text->Trim();
}

void CTagValue::SetDate(CXTime const& value) {
    GetDate() = value;
    type = TAGDATA_DATE;
}

CXTime& CTagValue::GetDate() {
    return Existing(date);
}

CTagValue::StringArray& CTagValue::Strings() {
    return Existing(strings);
}

CTagValue::UIntArray& CTagValue::UInts() {
    return Existing(uints);
}

CTagValue::FloatArray& CTagValue::Floats() {
    return Existing(floats);
}

void CTagValue::SetStringArray(StringArray const& values) {
    Strings().Copy(values);
    type = TAGDATA_STRINGS;
}

void CTagValue::SetUIntArray(UIntArray const& values) {
    UInts().Copy(values);
    type = TAGDATA_UINTS;
}

void CTagValue::SetFloatArray(FloatArray const& values) {
    Floats().Copy(values);
    type = TAGDATA_FLOATS;
}

CTagValue::StringArray& CTagValue::GetStringArray(bool empty) {
    if (empty && strings)
        strings->RemoveAll();
    return Strings();
}

CTagValue::UIntArray& CTagValue::GetUIntArray(bool empty) {
    if (empty && uints)
        uints->RemoveAll();
    return UInts();
}

CTagValue::FloatArray& CTagValue::GetFloatArray(bool empty) {
    if (!uints) {
        Floats().RemoveAll(); // a new array in the place of the old one, whose address callers may hold
        return *floats;
    }
    if (!floats) {
        static thread_local FloatArray nobodys;
        nobodys.RemoveAll(true);
        return nobodys;
    }
    if (empty)
        floats->RemoveAll();
    return *floats;
}

void CTagValue::AddUInt(unsigned int value) {
    if (!(type & TAGDATA_UINTS))
        InitType(TAGDATA_UINTS);
    UInts().Add(value);
}

void CTagValue::AddInt(int value) {
    if (!(type & TAGDATA_UINTS))
        InitType(TAGDATA_INTS);
    UInts().Add(static_cast<unsigned int>(value));
}

void CTagValue::AddFloat(float value) {
    if (!(type & TAGDATA_FLOATS))
        InitType(TAGDATA_FLOATS);
    Floats().Add(value);
}

void CTagValue::SetCustomData(CCustomData const& value) {
    if (&value != custom)
        GetCustomData() = value;
    type = TAGDATA_CUSTOM;
}

CCustomData& CTagValue::GetCustomData() {
    return Existing(custom);
}

void CTagValue::SetCustomInfo(void const* data, unsigned int size) {
    // The bytes may be those of the present store, so that one goes last.
    CCustomData info;
    if (data)
        info.SetBinary(CustomInfoId, data, size);
    GetCustomData() = info;
    type = TAGDATA_CUSTOMINFO;
}

void CTagValue::GetCustomInfo(void const*& data, unsigned int& size) {
    data = GetCustomPtr(size);
}

void const* CTagValue::GetCustomPtr(unsigned int& size) {
    return GetCustomData().GetCustomPtr(CustomInfoId, size);
}
