// SPDX-License-Identifier: MIT
// The bytes of docs/formats/custom_data.md, read and written.
#include "tests/support/format_page.h"
#include "tests/support/printers.h"
#include "tests/support/time_zone.h"
#include "zeltools/persistence/custom_data.h"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>

namespace {

using support::HexText;

/// The blocks of the page.
constexpr int Empty = 0, OneValue = 1, Kinds = 2, OlderKinds = 3;
constexpr int Previous = 4, LegacyWide = 5, LegacyNarrow = 6, LegacySaved = 7;

std::string Bytes(int example) {
    return support::HexExample("custom_data", example);
}

CCustomData Load(int example) {
    std::string const bytes = Bytes(example);
    CCustomData data;
    EXPECT_EQ(data.SerializeFromData(bytes.data(), bytes.size()), example != Empty);
    return data;
}

std::string Saved(CCustomData const& data) {
    unsigned long long size = 0;
    void* const block = data.SerializeToData(size);
    std::string const bytes(static_cast<char const*>(block), size);
    CCustomData::Free(block);
    return bytes;
}

template <class T>
T Get(CCustomData const& data, bool (CCustomData::*get)(unsigned int, T&, T) const, unsigned int id) {
    T value{};
    EXPECT_TRUE((data.*get)(id, value, T())) << id;
    return value;
}

CXTString<char16_t> Text(CCustomData const& data, unsigned int id) {
    CXTString<char16_t> value;
    EXPECT_TRUE(data.GetString(id, value)) << id;
    return value;
}

std::u16string Joined(CCustomData const& data, unsigned int id) {
    CXArray<CXTString<char16_t>> values(false);
    unsigned int const count = data.GetStringArray(id, values);
    EXPECT_EQ(count, static_cast<unsigned int>(values.GetSize()));
    std::u16string all;
    for (CXTString<char16_t> const& value : values)
        all += support::Whole(value) + u"|";
    return all;
}

TEST(CustomDataFormat, WritesEachKindAsShown) {
    EXPECT_EQ(HexText(Saved(CCustomData())), ""); // no block at all; an archive gets the eight bytes
    CCustomData one;
    one.SetInt(1, 2);
    EXPECT_EQ(HexText(Saved(one)), HexText(Bytes(OneValue)));

    CCustomData data;
    data.SetInt(1, -2);
    data.SetUInt(2, 4000000000);
    data.SetLong(3, -3);
    data.SetULong(4, 5);
    data.SetLongInt(5, -6);
    data.SetSizet(6, std::size_t{7} << 32);
    data.SetChar(7, 'z');
    data.SetUChar(8, 255);
    data.SetBool(9, 1);
    data.SetFloat(10, 1.5f);
    data.SetDouble(11, -0.25);
    data.SetPtr(12, reinterpret_cast<void*>(0x123456789A));
    data.SetXTime(13, 1705320000);
    data.SetUTCTime(14, 1705320000);
    data.SetBinary(15, "\xDE\xAD", 2);
    data.SetString(16, u"Z\u00E9");
    data.SetStringA(17, "oak");
    CXArray<CXTString<char16_t>> list(false);
    for (char16_t const* text : {u"a", u"", u"b"})
        list.Add(text);
    data.SetStringArray(18, list);
    std::uint16_t const elements[] = {1, 2, 3};
    EXPECT_TRUE(data.SetArray(19, elements, 3, 2));
    CCustomData inner;
    inner.SetInt(1, 7);
    data.SetCustomData(20, inner);
    EXPECT_EQ(HexText(Saved(data)), HexText(Bytes(Kinds)));
}

// What a dump shows in full is read in DumpsEachKind.
TEST(CustomDataFormat, ReadsEachKindAsShown) {
    TimeZone const zone("EST5"); // five hours behind: a stored UTC date is read as local time
    CCustomData data = Load(Kinds);
    EXPECT_EQ(Get(data, &CCustomData::GetLongInt, 5), -6);
    EXPECT_EQ(Get(data, &CCustomData::GetSizet, 6), std::size_t{7} << 32);
    EXPECT_EQ(data.GetPtr(12), reinterpret_cast<void*>(0x123456789A));
    CXTime time;
    EXPECT_TRUE(data.GetXTime(13, time));
    EXPECT_EQ(time.GetTime(), 1705320000);
    EXPECT_TRUE(data.GetUTCTime(14, time));
    EXPECT_EQ(time.GetTime(), 1705320000 + 5 * 3600);
    char bytes[2] = {};
    EXPECT_TRUE(data.GetBinary(15, bytes, 2));
    EXPECT_EQ(HexText({bytes, 2}), "DE AD");
    unsigned int count = 0;
    void const* const elements = data.GetArray(19, count, 2);
    ASSERT_EQ(count, 3u);
    EXPECT_EQ(std::memcmp(elements, "\1\0\2\0\3", 6), 0);
    EXPECT_EQ(data.GetArray(19, count, 3), nullptr);
    CCustomData inner;
    ASSERT_TRUE(data.GetCustomData(20, inner));
    EXPECT_EQ(Get(inner, &CCustomData::GetInt, 1), 7);
}

TEST(CustomDataFormat, ReadsOlderKindsAndRewritesTheOldNestedOne) {
    CCustomData data = Load(OlderKinds);
    CXTString<char> narrow;
    EXPECT_TRUE(data.GetStringA(2, narrow, "x"));
    EXPECT_EQ(narrow, "Z\xC3\xA9");
    CXTString<char16_t> wide;
    EXPECT_TRUE(data.GetStringW(2, wide, u"no text to this one"));
    EXPECT_EQ(wide, u"no text to this one");
    CCustomData inner;
    EXPECT_EQ(data.GetDataKindOf(5), CustomDataNestedOld);
    ASSERT_TRUE(data.GetCustomData(5, inner));
    EXPECT_EQ(Get(inner, &CCustomData::GetInt, 1), 7);
    EXPECT_EQ(data.GetDataKindOf(5), CustomDataNested);
    EXPECT_EQ(data.GetDataSize(5), 16u);
}

TEST(CustomDataFormat, ReadsEveryGeneration) {
    EXPECT_FALSE(Load(Empty).HasData());
    EXPECT_TRUE(Load(Previous).IsEqual(Load(OneValue)));

    CCustomData wide = Load(LegacyWide);
    EXPECT_EQ(wide.GetDataKindOf(1), CustomDataBlank);
    EXPECT_EQ(Get(wide, &CCustomData::GetInt, 1), 42);
    EXPECT_EQ(Get(wide, &CCustomData::GetFloat, 1), 42 * 0x1p-149f); // any kind of that size
    EXPECT_EQ(Text(wide, 2), u"Z\u00E9");
    EXPECT_EQ(Joined(wide, 2), u"Z\u00E9|");
    EXPECT_EQ(Get(wide, &CCustomData::GetUChar, 3), 7);

    CCustomData narrow = Load(LegacyNarrow);
    EXPECT_EQ(Text(narrow, 2), u"oak");
    EXPECT_EQ(Joined(narrow, 2), u"oak|");
    CXTString<char> text;
    EXPECT_TRUE(narrow.GetStringA(2, text));
    EXPECT_EQ(text, "oak");

    EXPECT_EQ(HexText(Saved(narrow)), HexText(Bytes(LegacySaved)));
    EXPECT_EQ(Text(Load(LegacySaved), 2), u"oak");
}

TEST(CustomDataFormat, DumpsEachKind) {
    // An id of a small number shows as nothing: its first byte ends the text.
    EXPECT_EQ(Load(Kinds).DumpCustomData(true, 1),
              u"\t ( INT) : -2\r\n\t (UINT) : 4000000000\r\n\t (LONG) : -3\r\n\t (ULON) : 5\r\n\t (LLON) : \r\n"
              u"\t (ULLO) : 30064771072\r\n\t (CHAR) : 122\r\n\t (UCHR) : 255\r\n\t (BOOL) : 1\r\n"
              u"\t (FLOA) : 1.500000\r\n\t (DOUB) : -0.250000\r\n\t (PTR6) : 0x3456789A\r\n"
              u"\t (TIMX) : ?\r\n\t (TIME) : ?\r\n\t ( BIN) : 0xDE 0xAD \r\n"
              u"\t (UNIC) : Z\u00E9\r\n\t (ANSI) : oak\r\n\t (USTR) : a, , b, \r\n"
              u"\t (ARRA) : 3 elements (10 bytes)\r\n\t (CDA2) : Sub data\r\n\t ( INT) : 7\r\n");
    EXPECT_EQ(Load(OlderKinds).DumpCustomData(true, 0),
              u" (PTR ) : 0x0\r\n (UTF8) : Z\u00E9\r\n (ASTR) : a, b, \r\n (U8TR) : \u00E9, \r\n (CDAT) : ?\r\n");
}

TEST(CustomDataFormat, DumpIndentsEachFurtherNestedStoreByOne) {
    CCustomData inner, outer;
    inner.SetInt(FourCC("QUAL"), 1);
    outer.SetCustomData(FourCC("ONE "), inner);
    outer.SetCustomData(FourCC("TWO "), inner);
    outer.SetCustomData(FourCC("LAST"), inner);
    EXPECT_EQ(outer.DumpCustomData(true, 0), u"ONE  (CDA2) : Sub data\r\nQUAL ( INT) : 1\r\n"
                                             u"TWO  (CDA2) : Sub data\r\n\tQUAL ( INT) : 1\r\n"
                                             u"LAST (CDA2) : Sub data\r\n\t\tQUAL ( INT) : 1\r\n");
    EXPECT_EQ(outer.DumpCustomData(false, 5).Find(u'\t'), -1);
}

} // namespace
