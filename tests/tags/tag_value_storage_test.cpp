// SPDX-License-Identifier: MIT
#include "tests/support/printers.h"
#include "tests/support/time_zone.h"
#include "zeltools/foundation/four_cc.h"
#include "zeltools/tags/tag_value.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace {

constexpr unsigned int id = FourCC("TAGV");

TEST(TagValueStorage, StoresTheseBytesAndReadsThemBack) {
    struct Row {
        void (*fill)(CTagValue& value);
        unsigned int kind;
        std::string bytes;
    };
    Row const rows[] = {
        {[](CTagValue& v) { v.SetFilename(u"a\u00E9"); }, CustomDataWide, {"a\0\xE9\0\0\0", 6}},
        {[](CTagValue& v) { v.SetText(u""); }, CustomDataWide, {"\0\0", 2}},
        {[](CTagValue& v) { v.SetInt(-2); }, CustomDataUInt, "\xFE\xFF\xFF\xFF"},
        {[](CTagValue& v) { v.SetLength(1.5F); }, CustomDataFloat, {"\0\0\xC0\x3F", 4}},
        // Tuesday 2 September 2003, 22:05:07 by the clocks of Paris
        {[](CTagValue& v) { v.SetDate(CXTime(2003, 9, 2, 22, 5, 7, -1)); },
         CustomDataBinary,
         {"\xD3\x07\x09\0\x02\0\x02\0\x16\0\x05\0\x07\0\0\0", 16}},
        {[](CTagValue& v) { v.InitType(TAGDATA_STRINGS), v.GetStringArray(false).SetSize(2); },
         CustomDataWideList,
         {"\0\0\0\0", 4}},
        {[](CTagValue& v) { v.AddInt(-1), v.AddInt(2); }, CustomDataBinary, {"\xFF\xFF\xFF\xFF\2\0\0\0", 8}},
        {[](CTagValue& v) { v.AddFloat(-2); }, CustomDataBinary, {"\0\0\0\xC0", 4}},
        {[](CTagValue& v) { v.SetCustomData({}), v.GetCustomData().SetInt(FourCC("ABCD"), 3); },
         CustomDataNested,
         {"DCBA\4\0\0\0TNI \3\0\0\0", 16}},
        {[](CTagValue& v) { v.SetCustomInfo("bytes", 5); }, CustomDataBinary, "bytes"},
    };
    TimeZone const zone(TimeZone::Paris);
    for (Row const& row : rows) {
        CTagValue value;
        row.fill(value);
        SCOPED_TRACE(testing::Message() << std::hex << value.GetDataType());
        CCustomData data;
        ASSERT_EQ(value.SetValueToData(data, id), 1);
        EXPECT_EQ(data.GetDataKindOf(id), row.kind);
        unsigned int size = 0;
        auto const* const bytes = static_cast<char const*>(data.GetCustomPtr(id, size));
        EXPECT_EQ(std::string(bytes, size), row.bytes);

        CTagValue back;
        ASSERT_EQ(back.GetValueFromData(data, id, static_cast<_TAGDATA_INFO>(value.GetDataType() | TAGFLAG_HIDDEN)), 1);
        EXPECT_EQ(back.GetDataType(), value.GetDataType());
        CCustomData again;
        EXPECT_EQ(back.SetValueToData(again, id), 1);
        EXPECT_TRUE(again.IsEqual(data));

        EXPECT_EQ(back.GetValueFromData(data, id + 1, back.GetDataType()), 0);
        EXPECT_EQ(back.SetValueToData(data, id), 0); // empty now
        EXPECT_TRUE(data.HasData(id));
    }
}

TEST(TagValueStorage, EmptyArraysAndMissingBytesRemoveTheId) {
    for (unsigned int const type : {TAGDATA_STRINGS, TAGDATA_INTS, TAGDATA_FLOATS, TAGDATA_CUSTOMINFO}) {
        CCustomData data;
        data.SetInt(id, 1);
        CTagValue value;
        value.InitType(static_cast<_TAGDATA_INFO>(type));
        EXPECT_EQ(value.SetValueToData(data, id), 1);
        EXPECT_FALSE(data.HasData(id)) << type;
    }
}

TEST(TagValueStorage, RefusesWhatWasStoredAsSomethingElse) {
    std::pair<unsigned int, void (*)(CCustomData & data)> const rows[] = {
        {TAGDATA_UINT, [](CCustomData& data) { data.SetInt(id, 1); }},
        {TAGDATA_FLOAT, [](CCustomData& data) { data.SetUInt(id, 1); }},
        {TAGDATA_DATE, [](CCustomData& data) { data.SetBinary(id, "fifteen bytes..", 15); }},
        {TAGDATA_UINTS, [](CCustomData& data) { data.SetUInt(id, 1); }},
        {TAGDATA_FLOATS, [](CCustomData& data) { data.SetBinary(id, "abc", 3); }},
        {TAGDATA_STRINGS, [](CCustomData& data) { data.SetBinary(id, "abcd", 4); }},
        {0x300, [](CCustomData& data) { data.SetBinary(id, "abcd", 4); }},
    };
    for (auto const& [type, store] : rows) {
        CCustomData data;
        store(data);
        CTagValue value;
        EXPECT_EQ(value.GetValueFromData(data, id, static_cast<_TAGDATA_INFO>(type)), 0) << type;
    }
    CCustomData data;
    CTagValue value;
    data.SetBinary(id, "1234567", 7);
    EXPECT_EQ(value.GetValueFromData(data, id, TAGDATA_UINTS), 1);
    EXPECT_EQ(value.GetUIntArray(false).GetSize(), 1); // the rest is no element
    data.SetInt(id, 5);
    value.SetText(u"before");
    EXPECT_EQ(value.GetValueFromData(data, id, TAGDATA_TEXT), 1); // any value is a text, if an empty one
    EXPECT_EQ(value.GetText(), u"");
}

TEST(TagValueStorage, ReadsItsOwnStore) {
    CTagValue value;
    value.SetCustomData({});
    value.GetCustomData().SetString(id, u"inside");
    EXPECT_EQ(value.GetValueFromData(value.GetCustomData(), id, TAGDATA_TEXT), 1);
    EXPECT_EQ(value.GetText(), u"inside");
}

TEST(TagValue, ReadsTextAndNumberThroughAPointer) {
    CTagValue value;
    unsigned int const number = 0xFFFFFFFF;
    value.GetStringArray(false).Add(u"Wood");
    EXPECT_EQ(value.GetValueFromVoid(&value.GetStringArray(false)[0], TAGDATA_FILENAME), 1);
    EXPECT_EQ(value.GetValueFromVoid(nullptr, TAGDATA_TEXT), 0);
    EXPECT_EQ(value.GetFilename(), u"Wood");
    EXPECT_EQ(value.GetValueFromVoid(&number, TAGDATA_COLOR), 1);
    EXPECT_EQ(value.GetFileSize(), number);
    EXPECT_EQ(value.GetValueFromVoid(&number, TAGDATA_FLOAT), 0);
    EXPECT_TRUE(value.IsEmpty());
}

} // namespace
