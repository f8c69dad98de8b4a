// SPDX-License-Identifier: MIT
#include "zeltools/foundation/string_conversion.h"

#include "tests/support/printers.h"
#include "zeltools/foundation/xlc_string.h"
#include "zeltools/platform/code_pages.h"
#include "zeltools/platform/system_string.h"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace {

struct ConversionRow {
    int encoding;
    char const* narrow;
    char16_t const* wide; // null: refused
    bool isExact;         // whether the way back gives the same bytes
};

ConversionRow const conversionRows[] = {
    {xEncodingUtf8, "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", u"a\u00E9\u20AC\U0001F600", true},
    {xEncodingUtf8, "a\xFFz\xE2\x82", u"a\uFFFDz\uFFFD", false},
    {xEncodingUtf8, "\xC0\x80\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD", false}, // no overlong, no surrogate
    {xEncodingAnsi, "\xE9\x80", u"\u00E9\u20AC", true},                                // 1252 is chosen below
    {0, "\xE9", u"\u00E9", true},
    {xEncodingUtf16, "a", nullptr, false},
    {99999, "a", nullptr, false},
    {99999, "", nullptr, false}, // a page that is not there has no empty text either
};

class StringConversion : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(platform::SetACP(1252)); }
    void TearDown() override { platform::SetACP(0); }
};

TEST_F(StringConversion, ConvertsBothWaysInEveryEncoding) {
    for (ConversionRow const& row : conversionRows) {
        SCOPED_TRACE(testing::Message() << row.encoding << " " << testing::PrintToString(CXTString<char>(row.narrow)));
        CXTString<char16_t> wide(u"old");
        EXPECT_EQ(XFASTCA2W(wide, row.narrow, row.encoding), row.wide != nullptr);
        EXPECT_EQ(wide, row.wide ? row.wide : u"");
        XCA2W const holder(row.narrow, row.encoding);
        EXPECT_EQ(static_cast<char16_t const*>(holder) != nullptr, row.wide != nullptr);
        if (row.isExact) {
            CXTString<char> narrow("old");
            EXPECT_TRUE(XFASTCW2A(narrow, row.wide, row.encoding));
            EXPECT_EQ(support::Whole(narrow), row.narrow);
        }
    }
    CXTString<char> narrow("old");
    EXPECT_FALSE(XFASTCW2A(narrow, u"a", xEncodingUtf16));
    EXPECT_TRUE(narrow.IsEmpty());
    EXPECT_FALSE(XFASTCW2A(narrow, u"", 99999));
    EXPECT_TRUE(XFASTCW2A(narrow, u"", 932));
    EXPECT_TRUE(XFASTCW2A(narrow, u"\u0100\U0001F600", 1252)); // the pair takes two
    EXPECT_EQ(narrow, "???");
    EXPECT_TRUE(XFASTCW2A(narrow, u"a\xD800", xEncodingUtf8));
    EXPECT_EQ(narrow, "a\xEF\xBF\xBD");
}

TEST_F(StringConversion, SystemStringsHaveTheirByteCountInFront) {
    XCA2BSTR const narrow("\xE9t\xE9");
    std::uint32_t bytes = 0;
    std::memcpy(&bytes, reinterpret_cast<char const*>(static_cast<char16_t*>(narrow)) - 4, 4);
    EXPECT_EQ(bytes, 6u);
    EXPECT_EQ(std::u16string(narrow), u"\u00E9t\u00E9");
    EXPECT_EQ(platform::SysStringLen(narrow), 3u);
    XCW2BSTR const empty(u"");
    ASSERT_NE(static_cast<char16_t*>(empty), nullptr); // other than for no text at all
    EXPECT_EQ(platform::SysStringLen(empty), 0u);
    EXPECT_EQ(static_cast<char16_t*>(XCW2BSTR(nullptr)), nullptr);
    EXPECT_EQ(static_cast<char16_t*>(XCA2BSTR(nullptr)), nullptr);
    EXPECT_EQ(platform::SysStringLen(nullptr), 0u);
}

TEST(ExLCString, LowersWhatItTakesAndWhatItSeeks) {
    CExLCString text(u"Wood.JPG");
    EXPECT_EQ(text, u"wood.jpg");
    EXPECT_EQ(text.Find(CXTString<char16_t>(u".Jpg")), 4);
    EXPECT_EQ(text.Find(u"O", 2), 2);
    EXPECT_EQ(text.Find(u"O", 8), -1);
}

} // namespace
