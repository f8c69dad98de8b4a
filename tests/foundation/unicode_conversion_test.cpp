// SPDX-License-Identifier: MIT
#include "zeltools/foundation/unicode_conversion.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Utf8Row {
    char const *name, *bytes;
    int measured; // without a target
    int written;  // with one, terminator included
    std::u16string_view units;
};

Utf8Row const utf8Rows[] = {
    {"Empty", "", 0, 1, u""},
    {"OneTwoAndThreeBytes", "a\xC3\xA9\xE2\x82\xAC", 6, 4, u"a\u00E9\u20AC"},
    {"LastOfThreeBytes", "\xEF\xBF\xBF", 3, 2, u"\uFFFF"},
    {"OverlongIsTaken", "\xC1\x81\xE0\x80\xA1", 5, 3, u"A!"},
    {"SurrogateIsTaken", "\xED\xA0\xBD\xED\xB8\x80", 6, 3, u"\xD83D\xDE00"},
    {"FourBytesFail", "ab\xF0\x9F\x98\x80", 0, 0, u"ab"},
    {"ContinuationAloneFails", "a\x80z", 0, 0, u"a"},
    {"LeadWithoutContinuationFails", "a\xC3z", 0, 0, u"a"},
    {"ThirdByteMissingFails", "a\xE2\x82z", 0, 0, u"a"},
    {"CutThreeBytesFail", "a\xE2\x82", 0, 0, u"a"},
    {"NoLeadFails", "\xFF", 0, 0, u""},
};

TEST(Utf8ToUtf16, ChecksAndDecodes) {
    for (Utf8Row const& row : utf8Rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(xUTF8ToUTF16(row.bytes, nullptr), row.measured);
        std::vector<char16_t> target(std::string_view(row.bytes).size() + 1, u'#');
        EXPECT_EQ(xUTF8ToUTF16(row.bytes, target.data()), row.written);
        EXPECT_EQ(std::u16string_view(target.data()), row.units);
    }
}

TEST(Utf16ToUtf32, JoinsPairsWithoutTheOffset) {
    struct {
        std::u16string source;
        std::u32string target;
    } const rows[] = {
        {u"", U""},
        {u"a\uFFFF", U"a\uFFFF"},
        {{0xD83D, 0xDE00}, {0xF600}}, // (0x3D << 10) + 0x200
        {{0xDBFF, 0xDFFF}, {0xFFFFF}},
        {{0xDE00, u'a'}, {0xDE00, U'a'}}, // a low surrogate passes
        {{0xD83D, u'a', u'b'}, {U'b'}},   // a high one takes its neighbour along
        {{0xD83D, 0xD83D, 0xDE00}, {0xDE00}},
        {{u'a', 0xD83D}, {U'a'}}, // as the last unit it gives nothing
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.source));
        std::u16string const exact(row.source); // no readable low surrogate behind the last unit
        std::u32string target(row.source.size(), U'#');
        int const written = xUTF16ToUTF32(exact.data(), static_cast<int>(exact.size()), target.data());
        ASSERT_GE(written, 0);
        EXPECT_EQ(target.substr(0, static_cast<std::size_t>(written)), row.target);
    }
    char16_t const pair[] = {0xD83D, 0xDE00};
    char32_t target[] = {7};
    EXPECT_EQ(xUTF16ToUTF32(pair, 1, target), 0); // what stands behind the count is not read
    EXPECT_EQ(xUTF16ToUTF32(pair, -1, target), 0);
    EXPECT_EQ(xUTF16ToUTF32(nullptr, 1, target), 0);
    EXPECT_EQ(target[0], 7u);
}

} // namespace
