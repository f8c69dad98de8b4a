// SPDX-License-Identifier: MIT
// Texts, which lie at any address and may lack their terminator when they come from outside.

#include "zeltools/foundation/string_conversion.h"
#include "zeltools/persistence/custom_data.h"
#include "zeltools/persistence/custom_data_private.h"

#include <algorithm>
#include <limits>
#include <string>

using detail::StoreLock;

namespace {

using WideString = CXTString<char16_t>;
using NarrowString = CXTString<char>;
using WideArray = CXArray<WideString>;

void AssignUnits(WideString& text, unsigned char const* units, std::size_t count) {
    text.SetLength(count);
    std::memcpy(text.GetText(), units, count * sizeof(char16_t));
}

/// The text of a chunk up to its first zero or its end.
void AssignWide(WideString& text, CustomPrivateData const& chunk) {
    std::size_t const units = chunk.size / sizeof(char16_t);
    AssignUnits(text, chunk.Data(), units);
    if (char16_t const* const end = std::char_traits<char16_t>::find(text.GetText(), units, u'\0'))
        text.SetLength(static_cast<std::size_t>(end - text.GetText()));
}

void AssignNarrow(NarrowString& text, CustomPrivateData const& chunk) {
    char const* const bytes = reinterpret_cast<char const*>(chunk.Data());
    text.Assign(bytes, ::strnlen(bytes, chunk.size));
}

void Widen(WideString& text, CustomPrivateData const& chunk, int encoding) {
    NarrowString narrow;
    AssignNarrow(narrow, chunk);
    XFASTCA2W(text, narrow, encoding);
}

/// How the text of a chunk is stored, of whatever generation: CustomDataWide, CustomDataNarrow, CustomDataUtf8, or 0
/// for what is no text.
unsigned int TextKind(CustomPrivateData const& chunk, unsigned int stringFormat) {
    switch (chunk.kind) {
    case CustomDataWide:
    case CustomDataNarrow:
    case CustomDataUtf8: return chunk.kind;
    case CustomDataBlank:
        return stringFormat == 1 ? CustomDataWide : stringFormat == 2 ? CustomDataNarrow : CustomDataKind();
    default: return 0;
    }
}

/// The same for a list of texts.
unsigned int ListKind(CustomPrivateData const& chunk, unsigned int stringFormat) {
    switch (TextKind(chunk, stringFormat)) {
    case CustomDataWide: return chunk.kind == CustomDataBlank ? CustomDataWideList : CustomDataKind();
    case CustomDataNarrow: return chunk.kind == CustomDataBlank ? CustomDataNarrowList : CustomDataKind();
    default: return chunk.kind;
    }
}

char16_t UnitAt(unsigned char const* units, std::size_t index) {
    char16_t unit;
    std::memcpy(&unit, units + index * sizeof(unit), sizeof(unit));
    return unit;
}

/// Calls `visit(units, count)` for each terminated text.
template <class Visit>
void ForEachWide(CustomPrivateData const& chunk, Visit const& visit) {
    std::size_t const units = chunk.size / sizeof(char16_t);
    std::size_t start = 0;
    for (std::size_t i = 0; i < units; ++i) {
        if (UnitAt(chunk.Data(), i) != 0)
            continue;
        visit(chunk.Data() + start * sizeof(char16_t), i - start);
        start = i + 1;
    }
}

/// Calls `visit(text)` for each terminated text.
template <class Visit>
void ForEachNarrow(CustomPrivateData const& chunk, Visit const& visit) {
    char const* text = reinterpret_cast<char const*>(chunk.Data());
    char const* const end = text + chunk.size;
    while (text != end) {
        auto const* const zero =
            static_cast<char const*>(std::memchr(text, '\0', static_cast<std::size_t>(end - text)));
        if (!zero)
            return;
        visit(text);
        text = zero + 1;
    }
}

/// The characters that a text stores: none for a buffer that was taken away.
template <class T>
unsigned long long StoredLength(CXTString<T> const& text) {
    return static_cast<T const*>(text) ? static_cast<unsigned int>(text.GetLength()) : 0;
}

} // namespace

// ---- One text ----

void CCustomData::SetString(unsigned int id, CXTString<char16_t> const& value) {
    static constexpr char16_t empty[] = u"";
    unsigned long long const bytes = (StoredLength(value) + 1) * sizeof(char16_t);
    char16_t const* const text = value;
    if (bytes <= 0xFFFFFFFF)
        SetCustom(id, text ? text : empty, static_cast<unsigned int>(bytes), CustomDataWide);
}

void CCustomData::SetStringW(unsigned int id, CXTString<char16_t> const& value) {
    SetString(id, value);
}

void CCustomData::SetStringA(unsigned int id, CXTString<char> const& value) {
    char const* const text = value;
    SetCustom(id, text ? text : "", static_cast<unsigned int>(StoredLength(value) + 1), CustomDataNarrow);
}

bool CCustomData::GetString(unsigned int id, CXTString<char16_t>& value,
                            CXTString<char16_t> const& defaultValue) const {
    StoreLock const hold(&threadLock);
    CustomPrivateData const* const chunk = ReachChunk(id);
    bool const found = chunk && chunk->size != 0;
    switch (found ? TextKind(*chunk, stringFormat) : 0) {
    case CustomDataWide: AssignWide(value, *chunk); break;
    case CustomDataNarrow: Widen(value, *chunk, xEncodingDefault); break;
    case CustomDataUtf8: Widen(value, *chunk, xEncodingUtf8); break;
    default: value = defaultValue; break;
    }
    return found;
}

bool CCustomData::GetStringW(unsigned int id, CXTString<char16_t>& value,
                             CXTString<char16_t> const& defaultValue) const {
    StoreLock const hold(&threadLock);
    CustomPrivateData const* const chunk = ReachChunk(id);
    if (!chunk || chunk->kind != CustomDataUtf8)
        return GetString(id, value, defaultValue);
    value = defaultValue;
    return chunk->size != 0;
}

bool CCustomData::GetStringA(unsigned int id, CXTString<char>& value, CXTString<char> const& defaultValue) const {
    StoreLock const hold(&threadLock);
    CustomPrivateData const* const chunk = ReachChunk(id);
    bool const found = chunk && chunk->size != 0;
    switch (found ? TextKind(*chunk, stringFormat) : 0) {
    case CustomDataWide: {
        WideString wide;
        AssignWide(wide, *chunk);
        XFASTCW2A(value, wide);
        break;
    }
    case CustomDataNarrow:
    case CustomDataUtf8: AssignNarrow(value, *chunk); break;
    default: value = defaultValue; break;
    }
    return found;
}

// ---- Lists of texts ----

void CCustomData::SetStrings(unsigned int id, CXArray<CXTString<char16_t>> const& values) {
    StoreLock const hold(&threadLock);
    unsigned long long bytes = 0;
    for (WideString const& value : values)
        bytes += (StoredLength(value) + 1) * sizeof(char16_t);
    if (bytes > 0xFFFFFFFF)
        return;
    CustomPrivateData* const chunk = PlaceChunk(id, static_cast<unsigned int>(bytes), CustomDataWideList);
    if (!chunk)
        return;
    unsigned char* target = chunk->Data();
    for (WideString const& value : values) {
        std::size_t const textBytes = static_cast<std::size_t>(StoredLength(value)) * sizeof(char16_t);
        if (textBytes != 0)
            std::memcpy(target, static_cast<char16_t const*>(value), textBytes);
        std::memset(target + textBytes, 0, sizeof(char16_t));
        target += textBytes + sizeof(char16_t);
    }
}

unsigned int CCustomData::GetStrings(unsigned int id, CXArray<CXTString<char16_t>>& values, bool) const {
    StoreLock const hold(&threadLock);
    values.RemoveAll();
    CustomPrivateData const* const chunk = ReachChunk(id);
    unsigned int const kind = chunk ? ListKind(*chunk, stringFormat) : 0;
    auto const visitAll = [&](auto const& visitWide, auto const& visitNarrow) {
        if (kind == CustomDataWideList)
            ForEachWide(*chunk, visitWide);
        else if (kind == CustomDataNarrowList || kind == CustomDataUtf8List)
            ForEachNarrow(*chunk, visitNarrow);
    };
    // The list form too, being an array: one that grows by steps would move a long list over and over.
    unsigned int textCount = 0;
    visitAll([&](unsigned char const*, std::size_t) { ++textCount; }, [&](char const*) { ++textCount; });
    values.PreAllocate(static_cast<int>(std::min<unsigned int>(textCount, std::numeric_limits<int>::max())));
    WideString value;
    visitAll(
        [&](unsigned char const* units, std::size_t count) {
            AssignUnits(value, units, count);
            values.Add(value);
        },
        [&](char const* text) {
            bool const isUtf8 = kind == CustomDataUtf8List;
            XFASTCA2W(value, text, isUtf8 ? xEncodingUtf8 : xEncodingAnsi);
            values.Add(value);
        });
    return static_cast<unsigned int>(values.GetSize());
}

void CCustomData::SetStringArray(unsigned int id, CXArray<CXTString<char16_t>> const& values) {
    SetStrings(id, values);
}
void CCustomData::SetStringList(unsigned int id, CXArray<CXTString<char16_t>> const& values) {
    SetStrings(id, values);
}
unsigned int CCustomData::GetStringArray(unsigned int id, CXArray<CXTString<char16_t>>& values) const {
    return GetStrings(id, values, true);
}
unsigned int CCustomData::GetStringList(unsigned int id, CXArray<CXTString<char16_t>>& values) const {
    return GetStrings(id, values, false);
}
