// SPDX-License-Identifier: MIT
#include "tests/support/literal_expansion.h"
#include "tests/support/printers.h"
#include "tests/tags/table_tags.h"

#include <gtest/gtest.h>
#include <random>

namespace {

struct Row {
    char const* name;
    char16_t const* text;
    char16_t const* expanded;
};

/// <x> gives "b", <e> an empty text, <no> refuses, <name> itself with its parameters.
class TagsText : public testing::Test {
protected:
    TagsText() {
        tags.Add(u"<x>", u"b");
        tags.Add(u"<e>", u"");
        tags.Add(u"<no>", [](CTagInfo const&, CTagValue&) { return false; });
        tags.Add(u"<name>", u"name");
        tags.Add(u"<two words>", u"w");
        tags.Add(u"<outer>", u"[<x>]");
        tags.Add(u"<open>", u"<na");
    }
    void Check(Row const& row) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(tags.Expand(row.text), row.expanded);
    }
    TableTags tags;
};

TEST_F(TagsText, ReplacesTags) {
    Row const rows[] = {
        {"Empty", u"", u""},
        {"NoTag", u"a b > c", u"a b > c"},
        {"Tag", u"a <x>, <x>.", u"a b, b."},
        {"UnknownStays", u"<nosuch> <x>", u"<nosuch> b"},
        {"RefusedStays", u"<no> <x>", u"<no> b"},
        {"CaseAndBlanksOfAChain", u"<NAME( Ext ( D ) )>", u"name(ext(d))"},
        {"BlanksWithoutAChainCount", u"<two words> < x>", u"w < x>"},
        {"ValueIsReadAgain", u"<outer>", u"[b]"},
        {"ValueCompletedByWhatFollows", u" <open>me>", u" name"},
        {"BracketEndsATag", u"a<name<b>", u"anameb>"},
        {"SeveralOpeningBracketsGo", u"<<<x>", u"b"},
        // Behind two closing brackets stands no start of a tag that anybody looks for.
        {"TagBehindAStrayBracketIsMissed", u"<nosuch>><x>", u"<nosuch>><x>"},
        {"FirstTokenIsTriedWithoutBracket", u"name>a<x>", u"name>a<x>"},
        {"NotAscii", u"\u00C9<\u00C9><x>", u"\u00C9<\u00C9>b"},
    };
    for (Row const& row : rows)
        Check(row);
}

} // namespace
