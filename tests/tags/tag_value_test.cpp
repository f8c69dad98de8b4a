// SPDX-License-Identifier: MIT
#include "zeltools/tags/tag_value.h"

#include "tests/support/printers.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <new>
#include <string>
#include <utility>

namespace {

TEST(TagValue, InitTypeTakesTypesThatHaveAnObject) {
    std::pair<unsigned int, unsigned int> const rows[] = {
        {TAGDATA_INTS, TAGDATA_INTS},
        {TAGDATA_DATE | TAGFLAG_READONLY, TAGDATA_DATE},
        {0x701, 0x701},
        {TAGDATA_UINT, 0}, // its setter is to be called
        {TAGDATA_LENGTH, 0},
        {TAGFLAG_HIDDEN, 0},
    };
    for (auto const& [argument, type] : rows) {
        CTagValue value;
        value.SetInt(7);
        value.InitType(static_cast<_TAGDATA_INFO>(argument));
        EXPECT_EQ(value.GetDataType(), type);
        EXPECT_EQ(value.GetInt(), 7);
    }
}

TEST(TagValue, ObjectsSurviveAChangeOfTypeAndAreReusedEmpty) {
    CTagValue value;
    value.SetText(u"Wood");
    CXTString<char16_t>* const text = &value.GetText();
    value.SetDate(CXTime(86400));
    EXPECT_EQ(value.GetText(), u"Wood");
    value.InitType(TAGDATA_FILENAME);
    EXPECT_EQ(&value.GetText(), text);
    EXPECT_TRUE(text->IsEmpty());

    value.SetText(u"again");
    value.Init();
    EXPECT_TRUE(value.IsEmpty());
    EXPECT_TRUE(value.GetText().IsEmpty());
    value.InitType(TAGDATA_DATE);
    EXPECT_EQ(value.GetDate().GetTime(), 86400); // the one object that is left alone
}

TEST(TagValue, AddingBeginsANewValueWhereTheTypeIsAnother) {
    CTagValue value;
    value.AddFloat(1);
    value.AddText(u" c");
    EXPECT_EQ(value.GetDataType(), TAGDATA_TEXT);
    value.SetFilename(value.GetText());
    value.AddText(u"d ");
    value.TrimText();
    EXPECT_EQ(value.GetDataType(), TAGDATA_FILENAME);
    EXPECT_EQ(value.GetFilename(), u"cd");

    value.AddInt(-1);
    value.AddUInt(2);
    EXPECT_EQ(value.GetDataType(), TAGDATA_INTS);
    EXPECT_EQ(value.GetUIntArray(false).GetSize(), 2);
    value.AddFloat(1);
    value.AddUInt(5);
    EXPECT_EQ(value.GetDataType(), TAGDATA_UINTS);
    EXPECT_EQ(value.GetUIntArray(false).GetSize(), 1);
    EXPECT_EQ(value.GetUIntArray(true).GetSize(), 0);
}

TEST(TagValue, TakesItsOwnContent) {
    CTagValue value;
    value.SetText(u"Wood");
    value.SetText(static_cast<char16_t const*>(value.GetText()) + 1);
    EXPECT_EQ(value.GetText(), u"ood");
    value.AddUInt(4);
    value.SetUIntArray(value.GetUIntArray(false));
    EXPECT_EQ(value.GetUIntArray(false).GetSize(), 1);
    value.SetCustomInfo("abc", 3);
    unsigned int size = 0;
    value.SetCustomInfo(static_cast<char const*>(value.GetCustomPtr(size)) + 1, 2);
    EXPECT_EQ(std::string(static_cast<char const*>(value.GetCustomPtr(size)), 2), "bc");
}

TEST(TagValue, FloatArrayGoesByTheUnsignedOne) {
    CTagValue value;
    value.AddFloat(1);
    EXPECT_EQ(value.GetFloatArray(false).GetSize(), 0); // no unsigned array: a new one each time
    value.AddFloat(2);
    value.GetUIntArray(false);
    EXPECT_EQ(value.GetFloatArray(false).GetSize(), 1);
    EXPECT_EQ(value.GetFloatArray(true).GetSize(), 0);

    CTagValue other;
    other.AddUInt(1);
    CTagValue::FloatArray three;
    three.Add(3);
    other.GetFloatArray(false).Add(3); // nobody's
    EXPECT_EQ(other.GetFloatArray(false).GetSize(), 0);
    other.SetFloatArray(three);
    EXPECT_EQ(other.GetFloatArray(false).GetSize(), 1);
}

TEST(TagValue, CopyIsAViewOfTheSameObjects) {
    CTagValue value;
    value.SetText(u"Wood");
    alignas(CTagValue) std::byte room[sizeof(CTagValue)];
    CTagValue& view = *new (room) CTagValue(value); // never destroyed, since the source is
    EXPECT_EQ(&view.GetText(), &value.GetText());
    view.SetUInt(1);
    EXPECT_EQ(value.GetDataType(), TAGDATA_TEXT);
}

} // namespace
