// SPDX-License-Identifier: MIT
#include "tests/support/comma_locale.h"
#include "tests/support/printers.h"
#include "tests/support/time_zone.h"
#include "zeltools/foundation/thread_language.h"
#include "zeltools/tags/tag_value.h"

#include <cfloat>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <set>
#include <string>
#include <utility>

namespace {

using Fill = void (*)(CTagValue& value);

int Convert(CTagValue& value, unsigned int type) {
    return value.HandleParametersAndConvertToType(type, CXTString<char16_t>());
}

// ---- Which type becomes which ----

struct PairRow {
    _TAGDATA_INFO type;
    Fill fill;
    std::set<unsigned int> targets; ///< of another base
};

constexpr unsigned int allTypes[] = {
    TAGDATA_TEXT,  TAGDATA_UINT,     TAGDATA_FLOAT,    TAGDATA_DATE,       TAGDATA_CUSTOM,     TAGDATA_STRINGS,
    TAGDATA_UINTS, TAGDATA_FLOATS,   TAGDATA_FILENAME, TAGDATA_INT,        TAGDATA_BOOL,       TAGDATA_FILESIZE,
    TAGDATA_COLOR, TAGDATA_DURATION, TAGDATA_LENGTH,   TAGDATA_RESOLUTION, TAGDATA_CUSTOMINFO, TAGDATA_INTS};
std::set<unsigned int> const justText = {TAGDATA_TEXT, TAGDATA_FILENAME};

PairRow const pairRows[] = {
    {TAGDATA_TEXT, [](CTagValue& v) { v.SetText(u"02/09/2003"); }, {std::begin(allTypes), std::end(allTypes)}},
    {TAGDATA_FILENAME, [](CTagValue& v) { v.SetFilename(u"1"); }, {}},
    {TAGDATA_UINT, [](CTagValue& v) { v.SetUInt(1); }, {TAGDATA_TEXT, TAGDATA_FILENAME, TAGDATA_UINTS, TAGDATA_FLOATS}},
    {TAGDATA_INT, [](CTagValue& v) { v.SetInt(1); }, justText},
    {TAGDATA_BOOL, [](CTagValue& v) { v.SetBool(1); }, justText},
    {TAGDATA_FILESIZE, [](CTagValue& v) { v.SetFileSize(1); }, justText},
    {TAGDATA_COLOR, [](CTagValue& v) { v.SetColor(1); }, justText},
    {TAGDATA_FLOAT,
     [](CTagValue& v) { v.SetFloat(1); },
     {TAGDATA_TEXT, TAGDATA_FILENAME, TAGDATA_UINT, TAGDATA_BOOL, TAGDATA_UINTS, TAGDATA_FLOATS}},
    {TAGDATA_DURATION, [](CTagValue& v) { v.SetDuration(1); }, justText},
    {TAGDATA_LENGTH, [](CTagValue& v) { v.SetLength(1); }, justText},
    {TAGDATA_RESOLUTION, [](CTagValue& v) { v.SetResolution(1); }, justText},
    {TAGDATA_DATE, [](CTagValue& v) { v.SetDate(CXTime(1)); }, justText},
    {TAGDATA_STRINGS, [](CTagValue& v) { v.SetStringArray({}); }, justText},
    {TAGDATA_UINTS, [](CTagValue& v) { v.AddUInt(1); }, {TAGDATA_TEXT, TAGDATA_FILENAME, TAGDATA_UINT, TAGDATA_INT}},
    {TAGDATA_INTS, [](CTagValue& v) { v.AddInt(1); }, {TAGDATA_TEXT, TAGDATA_FILENAME, TAGDATA_UINT, TAGDATA_INT}},
    {TAGDATA_FLOATS, [](CTagValue& v) { v.AddFloat(1); }, justText},
    {TAGDATA_CUSTOM, [](CTagValue& v) { v.SetCustomData(CCustomData()); }, {}},
    {TAGDATA_CUSTOMINFO, [](CTagValue& v) { v.SetCustomInfo("a", 1); }, justText},
};

TEST(TagValueConvert, EveryPairOfTypesIsAllowedOrLeavesTheValue) {
    CTagValue empty;
    EXPECT_EQ(Convert(empty, TAGDATA_TEXT), 0);
    ASSERT_EQ(std::size(pairRows), std::size(allTypes));
    for (PairRow const& row : pairRows) {
        for (unsigned int const target : allTypes) {
            SCOPED_TRACE(testing::Message() << std::hex << row.type << " to " << target);
            CTagValue value;
            row.fill(value);
            ASSERT_EQ(value.GetDataType(), row.type);
            bool const isSameBase = ((target ^ row.type) & TAGDATA_BASE_MASK) == 0;
            bool const isAllowed = isSameBase || row.targets.contains(target);
            EXPECT_EQ(Convert(value, target | TAGFLAG_READONLY), isAllowed);
            EXPECT_EQ(value.GetDataType(), isAllowed ? target : row.type);
        }
    }
}

// ---- Into text ----

struct TextRow {
    char const* name;
    Fill fill;
    char16_t const* text;
};

class TagValueToText : public testing::TestWithParam<TextRow> {};

TEST_P(TagValueToText, Prints) {
    SetThreadLanguage(1033);
    TimeZone const zone(TimeZone::Utc);
    CTagValue value;
    value.SetText(u"what was there before");
    GetParam().fill(value);
    EXPECT_EQ(Convert(value, TAGDATA_TEXT), 1);
    EXPECT_EQ(value.GetText(), GetParam().text);
}

TextRow const textRows[] = {
    {"Int", [](CTagValue& v) { v.SetInt(std::numeric_limits<int>::min()); }, u"-2147483648"},
    {"False", [](CTagValue& v) { v.SetBool(0); }, u"False"},
    {"Color", [](CTagValue& v) { v.SetColor(0xFF0380FE); }, u"254 128 3 (RGB)"},
    {"FileSize", [](CTagValue& v) { v.SetFileSize(1536); }, u"1.50 KB"},
    {"Float", [](CTagValue& v) { v.SetFloat(-0.00006F); }, u"-0.0001"},
    {"FloatHalfway", [](CTagValue& v) { v.SetFloat(0.03125F); }, u"0.0312"}, // ties to even, as the C library
    {"FloatMax", [](CTagValue& v) { v.SetFloat(FLT_MAX); }, u"340282346638528859811704183484516925440.0000"},
    {"DurationMinute", [](CTagValue& v) { v.SetDuration(60); }, u"60.00 s"},
    {"DurationAboveMinute", [](CTagValue& v) { v.SetDuration(61.9F); }, u"1:01 mn"},
    {"DurationHour", [](CTagValue& v) { v.SetDuration(3600); }, u"60:00 mn"},
    {"DurationAboveHour", [](CTagValue& v) { v.SetDuration(3661); }, u"01 h 01 mn 01 s"},
    {"DurationEndless", [](CTagValue& v) { v.SetDuration(INFINITY); }, u"2562047788015215 h 30 mn 07 s"},
    {"LengthSmall", [](CTagValue& v) { v.SetLength(10); }, u""},
    {"LengthCentimetres", [](CTagValue& v) { v.SetLength(1000); }, u"100.00 cm"},
    {"Date", [](CTagValue& v) { v.SetDate(CXTime(1062540300)); }, u"02/09/2003 22:05"},
    {"Strings",
     [](CTagValue& v) {
         CTagValue::StringArray strings;
         strings.Add(u"a");
         strings.Add(u"");
         v.SetStringArray(strings);
     },
     u"a ;  ; "},
    {"UIntsPrintSigned", [](CTagValue& v) { v.AddUInt(4294967295), v.AddUInt(1); }, u"-1; 1; "},
    {"Floats", [](CTagValue& v) { v.AddFloat(0.5F), v.AddFloat(-1); }, u"0.500000; -1.000000; "},
    {"Bytes", [](CTagValue& v) { v.SetCustomInfo("a\0~\x7F\xE9z", 6); }, u"a ~  z"},
    {"BytesMissing", [](CTagValue& v) { v.SetCustomInfo(nullptr, 3); }, u""},
};

INSTANTIATE_TEST_SUITE_P(Table, TagValueToText, testing::ValuesIn(textRows),
                         [](auto const& row) { return row.param.name; });

TEST(TagValueConvert, TextFollowsLanguageAndDecimalPoint) {
    CommaLocale const comma;
    SetThreadLanguage(1036);
    CTagValue value;
    value.SetBool(1);
    Convert(value, TAGDATA_TEXT);
    EXPECT_EQ(value.GetText(), u"Vrai");
    value.SetFloat(1.5F);
    Convert(value, TAGDATA_TEXT);
    EXPECT_EQ(value.GetText(), comma.IsSet() ? u"1,5000" : u"1.5000");
    SetThreadLanguage(0);
}

// ---- Out of text ----

TEST(TagValueConvert, TextIsCutAtBlankSemicolonBlank) {
    struct Row {
        char16_t const* text;
        char16_t const* elements;
    };
    Row const rows[] = {
        {u"", u""},
        {u"a;b", u"[a;b]"},                   // the separator needs its blanks
        {u"1 ; ; 2", u"[1][; 2]"},            // the second blank belongs to the first separator
        {u" \t a ;   ; \u00A0b ", u"[a][b]"}, // blanks go, and what was blank alone
        {u"a ; ", u"[a]"},
    };
    for (Row const& row : rows) {
        CTagValue value;
        value.SetText(row.text);
        EXPECT_EQ(Convert(value, TAGDATA_STRINGS), 1);
        CXTString<char16_t> elements;
        for (CXTString<char16_t> const& element : value.GetStringArray(false))
            elements += u"[" + element + u"]";
        EXPECT_EQ(elements, row.elements);
    }
}

TEST(TagValueConvert, TextIsScannedForNumbers) {
    CTagValue value;
    value.SetText(u"1 ; x ; -2 ; 3y");
    EXPECT_EQ(Convert(value, TAGDATA_INTS), 1);
    ASSERT_EQ(value.GetUIntArray(false).GetSize(), 3);
    EXPECT_EQ(value.GetUIntArray(false)[1], 0xFFFFFFFEu);
    EXPECT_EQ(value.GetUIntArray(false)[2], 3u);

    value.SetText(u"1.5 ; . ; -2e3");
    EXPECT_EQ(Convert(value, TAGDATA_FLOATS), 1);
    ASSERT_EQ(value.GetFloatArray(false).GetSize(), 2);
    EXPECT_EQ(value.GetFloatArray(false)[1], -2000.0F);

    value.SetText(u"18446744073709551615 and more");
    EXPECT_EQ(Convert(value, TAGDATA_FILESIZE), 1);
    EXPECT_EQ(value.GetFileSize(), ~0ULL);
    value.SetText(u"-5");
    EXPECT_EQ(Convert(value, TAGDATA_INT), 1);
    EXPECT_EQ(value.GetInt(), -5);
    value.SetText(u"five");
    EXPECT_EQ(Convert(value, TAGDATA_UINT), 0);
    EXPECT_EQ(Convert(value, TAGDATA_LENGTH), 0);
    EXPECT_EQ(value.GetInt(), -5);
    value.SetUIntArray({});
    EXPECT_EQ(Convert(value, TAGDATA_UINT), 0);
}

TEST(TagValueConvert, TextThatIsNoDateLeavesADate) {
    CTagValue value;
    value.SetDate(CXTime(77));
    value.SetText(u"yesterday");
    EXPECT_EQ(Convert(value, TAGDATA_DATE), 0);
    EXPECT_EQ(value.GetDataType(), TAGDATA_DATE);
    EXPECT_EQ(value.GetDate().GetTime(), 77);
}

TEST(TagValueConvert, TextGivesAsManyBytesAsItHasCharacters) {
    CTagValue value;
    value.SetText(u"abcd");
    EXPECT_EQ(Convert(value, TAGDATA_CUSTOMINFO), 1);
    unsigned int size = 0;
    auto const* const bytes = static_cast<char const*>(value.GetCustomPtr(size));
    EXPECT_EQ(std::string(bytes, size), std::string("a\0b\0", 4));
}

// ---- Numbers ----

TEST(TagValueConvert, FloatIsCutTowardsZero) {
    constexpr unsigned long long most = std::numeric_limits<unsigned long long>::max();
    std::pair<float, unsigned long long> const rows[] = {
        {1.5F, 1}, {-0.9F, 0}, {-1.5F, most}, {0x1p63F, 1ULL << 63}, {0x1p64F, most}, {NAN, 0}, {-INFINITY, 1ULL << 63},
    };
    for (auto const& [from, number] : rows) {
        CTagValue value;
        value.SetFloat(from);
        EXPECT_EQ(Convert(value, TAGDATA_BOOL), 1);
        EXPECT_EQ(value.GetFileSize(), number) << from;
    }
}

} // namespace
