// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/wildcards.h"

#include "zeltools/files/paths/extension_lists.h"
#include "zeltools/files/paths/text_view_private.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using Text = CXTString<char16_t>;

TEST(Wildcards, MatchesNames) {
    struct {
        char16_t const *name, *pattern;
        bool caseSensitive, isMatch;
    } const rows[] = {
        {u"ABC", u"a*C", false, true},    {u"ABC", u"*a*c", false, false}, // without a first phase nothing ignores case
        {u"ABC", u"a*c", false, false},   {u"\x0141x", u"Ax", false, true}, // the low 8 bits of U+0141 are those of A
        {u"\x0141x", u"Ax", true, false}, {u"\x0100", u"", false, false},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(fileMatchWilcards(row.name, row.pattern, row.caseSensitive), row.isMatch)
            << testing::PrintToString(std::u16string(row.name)) << testing::PrintToString(std::u16string(row.pattern));
    }
}

TEST(ExtensionLists, AreCleaned) {
    struct {
        char16_t const* list;
        bool extensions;
        char16_t const* clean;
    } const rows[] = {
        {u" TIF, .png;b.c tif,,*.tif ", true, u"*.tif *.png b.c"},
        {u"abc", false, u"*abc*"},
        {u"a?c *.x", false, u"a?c **.x*"},
        {u"\"Two Words\" x", false, u"two words *x*"},
        {u"\"\" \"", false, u""},
        {u"x\x3000y\x00A0z", true, u"*.x *.y *.z"}, // wide and no-break spaces separate
    };
    for (auto const& row : rows) {
        Text const clean = fileCleanExtensionList(row.list, row.extensions, nullptr);
        EXPECT_EQ(std::u16string(detail::View(clean)), row.clean);
    }

    CHashTable<Text> known;
    known.Insert(u"*.tif");
    EXPECT_EQ(std::u16string(fileCleanExtensionList(u"tif png", true, &known)), u"*.png");
    EXPECT_EQ(known.GetCount(), 2U);

    Text const longList(u'x', 300);
    EXPECT_EQ(fileCleanExtensionList(longList, true, nullptr).GetLength(), 259 + 2);
}

} // namespace
