// SPDX-License-Identifier: MIT
#include "tests/support/printers.h"
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

int Convert(CTagValue& value, unsigned int type) {
    return value.HandleParametersAndConvertToType(type, CXTString<char16_t>());
}

using Types = std::set<unsigned int>;

Types const allTypes = {TAGDATA_TEXT,       TAGDATA_UINT,       TAGDATA_FLOAT,  TAGDATA_DATE,     TAGDATA_CUSTOM,
                        TAGDATA_STRINGS,    TAGDATA_UINTS,      TAGDATA_FLOATS, TAGDATA_FILENAME, TAGDATA_INT,
                        TAGDATA_BOOL,       TAGDATA_FILESIZE,   TAGDATA_COLOR,  TAGDATA_DURATION, TAGDATA_LENGTH,
                        TAGDATA_RESOLUTION, TAGDATA_CUSTOMINFO, TAGDATA_INTS};

/// What a type becomes that has another base.
Types TargetsOf(unsigned int type) {
    switch (type) {
    case TAGDATA_TEXT: return allTypes;
    case TAGDATA_FILENAME:
    case TAGDATA_CUSTOM: return {};
    case TAGDATA_UINT: return {TAGDATA_TEXT, TAGDATA_FILENAME, TAGDATA_UINTS, TAGDATA_FLOATS};
    case TAGDATA_FLOAT:
        return {TAGDATA_TEXT, TAGDATA_FILENAME, TAGDATA_UINT, TAGDATA_BOOL, TAGDATA_UINTS, TAGDATA_FLOATS};
    case TAGDATA_UINTS:
    case TAGDATA_INTS: return {TAGDATA_TEXT, TAGDATA_FILENAME, TAGDATA_UINT, TAGDATA_INT};
    default: return {TAGDATA_TEXT, TAGDATA_FILENAME};
    }
}

TEST(TagValueConvert, EveryPairOfTypesIsAllowedOrLeavesTheValue) {
    CTagValue empty;
    EXPECT_EQ(Convert(empty, TAGDATA_TEXT), 0);
    for (unsigned int const type : allTypes) {
        for (unsigned int const target : allTypes) {
            SCOPED_TRACE(testing::Message() << std::hex << type << " to " << target);
            CTagValue value;
            value.SetText(u"02/09/2003"); // a date, and a number at its front
            ASSERT_EQ(Convert(value, type), 1);
            bool const isSameBase = ((target ^ type) & TAGDATA_BASE_MASK) == 0;
            bool const isAllowed = isSameBase || TargetsOf(type).contains(target);
            EXPECT_EQ(Convert(value, target | TAGFLAG_READONLY), isAllowed);
            EXPECT_EQ(value.GetDataType(), isAllowed ? target : type);
        }
    }
}

TEST(TagValueConvert, ValuesPrint) {
    std::pair<void (*)(CTagValue&), char16_t const*> const rows[] = {
        {[](CTagValue& v) { v.SetUInt(4294967295); }, u"4294967295"},
        {[](CTagValue& v) { v.SetInt(-7); }, u"-7"},
        {[](CTagValue& v) { v.SetBool(0); }, u"False"},
        {[](CTagValue& v) { v.SetColor(0xFF0380FE); }, u"254 128 3 (RGB)"},
        {[](CTagValue& v) { v.SetFloat(-0.00006F); }, u"-0.0001"},
        {[](CTagValue& v) { v.SetFloat(FLT_MAX); }, u"340282346638528859811704183484516925440.0000"},
        {[](CTagValue& v) { v.SetResolution(72); }, u"72.000000 dpi"},
        {[](CTagValue& v) { v.SetDuration(60); }, u"60.00 s"}, // the borders of the forms belong to the form below
        {[](CTagValue& v) { v.SetDuration(61.9F); }, u"1:01 mn"},
        {[](CTagValue& v) { v.SetDuration(3600); }, u"60:00 mn"},
        {[](CTagValue& v) { v.SetDuration(3661); }, u"01 h 01 mn 01 s"},
        {[](CTagValue& v) { v.SetDuration(INFINITY); }, u"2562047788015215 h 30 mn 07 s"},
        {[](CTagValue& v) { v.SetLength(10); }, u""},
        {[](CTagValue& v) { v.SetLength(1000); }, u"100.00 cm"},
        {[](CTagValue& v) { v.SetLength(1500); }, u"1.50 m"},
        {[](CTagValue& v) { v.InitType(TAGDATA_STRINGS), v.GetStringArray(false).SetSize(2); }, u" ;  ; "},
        {[](CTagValue& v) { v.AddUInt(4294967295), v.AddUInt(1); }, u"-1; 1; "},
        {[](CTagValue& v) { v.AddFloat(0.5F), v.AddFloat(-1); }, u"0.500000; -1.000000; "},
        {[](CTagValue& v) { v.SetCustomInfo("a\0~\x7F\xE9z", 6); }, u"a ~  z"},
        {[](CTagValue& v) { v.SetCustomInfo(nullptr, 3); }, u""},
    };
    SetThreadLanguage(1033);
    for (auto const& [fill, text] : rows) {
        CTagValue value;
        value.SetText(u"what was there before");
        fill(value);
        EXPECT_EQ(Convert(value, TAGDATA_TEXT), 1);
        EXPECT_EQ(value.GetText(), text);
    }
}

TEST(TagValueConvert, TextBecomesAnArrayAndIsPrintedAgain) {
    struct Row {
        char16_t const* text;
        unsigned int type;
        char16_t const* printed;
    };
    Row const rows[] = {
        {u"", TAGDATA_STRINGS, u""},
        {u"a;b", TAGDATA_STRINGS, u"a;b ; "},                      // the separator needs its blanks
        {u"1 ; ; 2", TAGDATA_STRINGS, u"1 ; ; 2 ; "},              // the second blank belongs to the first separator
        {u" \t a ;   ; \u00A0b ; ", TAGDATA_STRINGS, u"a ; b ; "}, // blanks go, and what was blank alone
        {u"1 ; ; 2", TAGDATA_UINTS, u"1; "},
        {u"1 ; x ; -2 ; 3y", TAGDATA_INTS, u"1; -2; 3; "},
        {u"1.5 ; . ; -2e3", TAGDATA_FLOATS, u"1.500000; -2000.000000; "},
    };
    for (Row const& row : rows) {
        CTagValue value;
        value.SetText(row.text);
        EXPECT_EQ(Convert(value, row.type), 1);
        EXPECT_EQ(Convert(value, TAGDATA_TEXT), 1);
        EXPECT_EQ(value.GetText(), row.printed);
    }
}

TEST(TagValueConvert, TextIsScannedForANumber) {
    CTagValue value;
    value.SetText(u"18446744073709551615 and more");
    EXPECT_EQ(Convert(value, TAGDATA_FILESIZE), 1);
    EXPECT_EQ(value.GetFileSize(), ~0ULL);
    value.SetText(u"-5");
    EXPECT_EQ(Convert(value, TAGDATA_INT), 1);
    value.SetText(u"five");
    EXPECT_EQ(Convert(value, TAGDATA_UINT), 0);
    EXPECT_EQ(Convert(value, TAGDATA_LENGTH), 0);
    EXPECT_EQ(value.GetInt(), -5);
    value.SetUIntArray({});
    EXPECT_EQ(Convert(value, TAGDATA_UINT), 0);
}

TEST(TagValueConvert, TextBecomesADateOrBytes) {
    CTagValue value;
    value.SetDate(CXTime(77));
    value.SetText(u"yesterday");
    EXPECT_EQ(Convert(value, TAGDATA_DATE), 0);
    EXPECT_EQ(value.GetDataType(), TAGDATA_DATE); // of the time before
    EXPECT_EQ(value.GetDate().GetTime(), 77);

    value.SetText(u"abcd");
    EXPECT_EQ(Convert(value, TAGDATA_CUSTOMINFO), 1);
    unsigned int size = 0;
    auto const* const bytes = static_cast<char const*>(value.GetCustomPtr(size));
    EXPECT_EQ(std::string(bytes, size), std::string("a\0b\0", 4)); // as many as there are characters
}

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
