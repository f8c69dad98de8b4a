// SPDX-License-Identifier: MIT
#include "tests/support/format_page.h"
#include "tests/support/literal_expansion.h"
#include "tests/support/printers.h"
#include "tests/support/repeated.h"
#include "tests/support/vectors.h"
#include "tests/tags/table_tags.h"
#include "zeltools/foundation/log_file.h"

#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <span>
#include <vector>

namespace {

struct Row {
    char const* name;
    char16_t const* text;
    char16_t const* expanded;
};

std::u16string Wide(std::string const& ascii) {
    return {ascii.begin(), ascii.end()};
}

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
    void Check(std::span<Row const> rows) {
        for (Row const& row : rows)
            EXPECT_EQ(tags.Expand(row.text), row.expanded) << row.name;
    }
    TableTags tags;
};

TEST_F(TagsText, ReplacesTags) {
    Row const rows[] = {
        {"Empty", u"", u""},
        {"Tag", u"a <x>, <x>.", u"a b, b."},
        {"UnknownStays", u"<nosuch> <x>", u"<nosuch> b"},
        {"RefusedStays", u"<no> <x>", u"<no> b"},
        {"CaseAndBlanksOfAChain", u"<NAME( Ext ( D ) )>", u"name(ext(d))"},
        {"BlanksWithoutAChainCount", u"<two words> < x>", u"w < x>"},
        {"ValueCompletedByWhatFollows", u" <open>me>", u" name"},
        {"NotAscii", u"\u00C9<\u00C9><x>", u"\u00C9<\u00C9>b"},
    };
    Check(rows);
}

// The rows of the page that tell what the library does with a text.
TEST(TemplatePage, RowsExpandAsTheyAreShown) {
    TableTags tags;
    tags.Add(u"<name>", u"oak");
    tags.Add(u"<empty>", u"");
    tags.Add(u"<two>", u"<name>, <name>");
    for (support::FencedBlock const& block : support::FencedBlocks("template-language", "expansion")) {
        for (std::string const& line : block.lines) {
            auto const trimmed = [](std::string const& cell) {
                return Wide(cell.substr(0, cell.find_last_not_of(' ') + 1));
            };
            std::vector<std::string> const cells = vectors::Split(line, "| ");
            ASSERT_EQ(cells.size(), 3u) << line;
            EXPECT_EQ(tags.Expand(trimmed(cells[0])), trimmed(cells[1])) << line;
        }
    }
}

TEST_F(TagsText, KeepsABlockWithATextAndTakesOutOneWithout) {
    Row const rows[] = {
        {"NoTag", u"1<tagifexist>abc</tagifexist>2", u"12"},
        {"MarkersOfAKeptBlockStay", u"<TagIfExist>a<x></TagIfExist>", u"<TagIfExist>ab</TagIfExist>"},
        {"OtherCloser", u"<tagifexist><e><tagendifexist><tagifexist><x><tagendifexist>",
         u"<tagifexist>b<tagendifexist>"},
        {"InnerKeepsOuter", u"<tagifexist>1<tagifexist>2<tagifexist><x></tagifexist></tagifexist></tagifexist>",
         u"<tagifexist>1<tagifexist>2<tagifexist>b</tagifexist></tagifexist></tagifexist>"},
        {"InnerGoesAlone", u"<tagifexist>1<tagifexist>2</tagifexist>3<x></tagifexist>",
         u"<tagifexist>13b</tagifexist>"},
        {"OuterOfAnEmptyInnerGoes", u"0<tagifexist>1<tagifexist>2</tagifexist>3<e></tagifexist>4", u"04"},
        {"OpenBlockStays", u"<tagifexist>a<e>", u"<tagifexist>a"},
        {"OpenerWithoutBracketEndsAll", u"tagifexist>a</tagifexist><x>", u"tagifexist>a</tagifexist><x>"},
        // The tag takes the bracket that ended the marker before it, and the block goes with what is left of it.
        {"OpenerWithoutItsEnd", u"<tagifexist<e></tagifexist>2", u"2"},
    };
    Check(rows);
}

TEST_F(TagsText, AnswersACloserThatNoBlockAwaits) {
    tags.Add(u"</tagifexist>", u"end");
    EXPECT_EQ(tags.Expand(u"1</tagifexist>2"), u"1end2");
}

TEST_F(TagsText, OneValueServesAllTags) {
    tags.Add(u"<same>", [](CTagInfo const&, CTagValue&) { return true; });
    EXPECT_EQ(tags.Expand(u"<same>, <x>, <same>"), u", b, b");
    tags.Add(u"<zero>", [](CTagInfo const&, CTagValue& value) {
        value.SetText(u"abc");
        value.GetText().SetAt(1, u'\0');
        return true;
    });
    EXPECT_EQ(tags.Expand(u" <zero>"), u" a") << "a text operand counts up to its first zero";
}

TEST_F(TagsText, AHostMayChangeTheTagsAndExpandAnotherTextMeanwhile) {
    tags.Add(u"<busy>", [this](CTagInfo const& info, CTagValue& value) {
        for (unsigned int i = 0; i < 100; ++i)
            tags.Insert(CXTString<char16_t>(static_cast<char16_t>(u'A' + i), 1), TAGDATA_TEXT, 1, i);
        CXTString<char16_t> text(u"<outer>");
        tags.ProcessText(CTags::CTagContext(), text);
        value.SetText(info.GetTagName() + text);
        value.GetText().Remove(u'<');
        return true;
    });
    for (int pass = 0; pass < 2; ++pass)
        EXPECT_EQ(tags.Expand(u"1<busy>2"), u"1busy>[b]2");
}

TEST_F(TagsText, AChangeOfTheTagsIsSeenAtOnce) {
    std::optional<TableTags> passing; // two registries at one address
    for (char16_t const* value : {u"one", u"two"}) {
        passing.emplace().Add(u"<x>", value);
        EXPECT_EQ(passing->Expand(u"<x>"), value);
    }
    TableTags copy(tags);
    EXPECT_EQ(tags.Expand(u" <x>"), u" b"); // the last one before the removal
    tags.RemoveTag(u"<x>");
    EXPECT_EQ(tags.Expand(u" <x>"), u" <x>");
    EXPECT_EQ(copy.Expand(u" <x>"), u" b");
    copy = tags;
    EXPECT_EQ(copy.Expand(u" <x>"), u" <x>");
    EXPECT_EQ(copy.evaluations, 0u);
    CTagInfo seen;
    tags.Add(u"<y>", [&](CTagInfo const& info, CTagValue&) {
        seen = info;
        return false;
    });
    EXPECT_EQ(tags.Expand(u" <y>"), u" <y>");
    unsigned int const before = seen.GetTagID();
    tags.Insert(u"<y>", TAGDATA_TEXT, 77, before + 1);
    EXPECT_EQ(tags.Expand(u" <y>"), u" <y>");
    EXPECT_EQ(seen.GetTagID(), before + 1);
}

TEST_F(TagsText, AFailureAndAnotherKindLeaveTheText) {
    tags.Add(u"<throw>", [](CTagInfo const&, CTagValue&) -> bool { throw 1; });
    CXTString<char16_t> text(u"<x><throw>");
    CTags::CTagContext context;
    EXPECT_THROW(tags.ProcessText(context, text), int);
    EXPECT_EQ(text, u"<x><throw>");
    context.kind = 2;
    tags.ProcessText(context, text);
    EXPECT_EQ(text, u"<x><throw>");
}

// ---- What would run for ever ---------------------------------------------------------------------------------------

class TagsTextLimits : public TagsText {
protected:
    TagsTextLimits() {
        lines.clear();
        SetLogCallback([](unsigned int, CXTString<char16_t> text, bool, void*) { lines.push_back(text); }, nullptr);
        // Holds its own tag as often as `left` says.
        tags.Add(u"<count>", [this](CTagInfo const&, CTagValue& value) {
            value.SetText(left > 0 ? u".<count>" : u"end");
            left -= left > 0;
            return true;
        });
    }
    ~TagsTextLimits() override { SetLogCallback(nullptr, nullptr); }
    /// The text in full, and whether the log has a line.
    void Expect(char16_t const* text, std::u16string const& expanded, bool stopped) {
        lines.clear();
        EXPECT_EQ(tags.Expand(text), expanded);
        EXPECT_EQ(lines.size(), stopped ? 1u : 0u);
    }
    unsigned int left = 0;
    static inline std::vector<CXTString<char16_t>> lines;
};

TEST_F(TagsTextLimits, ChainOfValues) {
    tags.SetTextLimits({100, 1000, 1000});
    left = 100;
    Expect(u"<count>", std::u16string(100, u'.') + u"end", false);
    left = 101;
    Expect(u"<count>", std::u16string(101, u'.') + u"<count>", true);
    EXPECT_NE(lines[0].Find(u"comes out of itself"), -1) << "the log says what stopped it";
    // The second tag of the template begins a chain of its own, and so does what follows a value.
    left = 100;
    Expect(u"<count>;<count>", std::u16string(100, u'.') + u"end;end", false);

    tags.SetTextLimits({});
    left = 50'000;
    Expect(u"<count>", std::u16string(50'000, u'.') + u"end", false);
    tags.Add(u"<self>", u"<self>");
    Expect(u"1<self>2", u"1<self>2", true);
    EXPECT_EQ(tags.evaluations, 100'001u);
}

TEST_F(TagsTextLimits, TagsInValues) {
    tags.Add(u"<a>", u"<b><b>");
    tags.Add(u"<b>", u"<x>");
    tags.SetTextLimits({10, 4, 1000});
    Expect(u"0<a><x><x><x>", u"0bbbbb", false);
    tags.SetTextLimits({10, 3, 1000});
    Expect(u"0<a><x>", u"0b<x><x>", true);
}

TEST_F(TagsTextLimits, Length) {
    tags.Add(u"<long>", u"0123456789");
    tags.Add(u"<inner>", u"<long>");
    tags.SetTextLimits({10, 10, 3}); // "<inner>" is seven of the ten
    Expect(u"a<inner>", u"a0123456789", false);
    tags.SetTextLimits({10, 10, 2});
    Expect(u"a<inner>", u"a<long>", true);
    Expect(u"a<long", u"a<long", true);
    Expect(u"a<long>", u"a0123456789", false); // has an end, however long

    tags.Add(u"<grows>", u"..<grows>");
    tags.SetTextLimits({1000, 1000, 100});
    Expect(u"<grows>", std::u16string(100, u'.') + u"<grows>", true);
}

TEST_F(TagsTextLimits, TagAtTheEndThatNothingCloses) {
    tags.SetTextLimits({5, 1000, 1000});
    Expect(u"a<x", u"abbbbb<x", true);
    unsigned int calls = 0;
    tags.Add(u"<thrice>", [&](CTagInfo const&, CTagValue& value) {
        value.SetText(u"t");
        return ++calls <= 3;
    });
    Expect(u"a<thrice", u"attt<thrice", false);
    // Long parameters are read anew each time.
    tags.SetTextLimits({1000, 1000, 100});
    tags.Add(u"<none>", [](CTagInfo const&, CTagValue&) { return true; });
    Expect(u"<none(0123456789012345678901234567890123456789", u"<none(0123456789012345678901234567890123456789", true);
    EXPECT_EQ(tags.evaluations, 3u);
}

TEST_F(TagsTextLimits, BlockAtTheEndThatNothingCloses) {
    Expect(u"1<tagifexist>a<e>b</tagifexist", u"1<tagifexist>ab</tagifexist", true);
    EXPECT_EQ(tags.evaluations, 1u) << "no pass without a tag is worth another";
    unsigned int calls = 0;
    tags.Add(u"<late>", [&](CTagInfo const&, CTagValue& value) {
        value.SetText(u"v");
        return ++calls > 4;
    });
    Expect(u"<tagifexist><late></tagifexist", u"<tagifexist>v</tagifexist", false);
    calls = 0;
    tags.SetTextLimits({3, 1000, 1000});
    Expect(u"<tagifexist><late></tagifexist", u"<tagifexist><late></tagifexist", true);
    // A removal may bring two halves of a tag together, which the next pass finds.
    Expect(u"<tagifexist><na<tagifexist></tagifexist>me></tagifexist", u"<tagifexist>name</tagifexist", false);
}

TEST_F(TagsTextLimits, CallsInsideEachOther) {
    tags.Add(u"<inside>", [&](CTagInfo const&, CTagValue& value) {
        CXTString<char16_t> text(u".<inside>");
        tags.ProcessText(CTags::CTagContext(), text);
        text.Remove(u'<');
        value.SetText(text);
        return true;
    });
    tags.SetTextLimits({.depth = 3});
    Expect(u".<inside>", u"....inside>", true); // the fourth call leaves its text
    tags.SetTextLimits({});
    Expect(u"<inside>", std::u16string(256, u'.') + u"inside>", true);
}

TEST_F(TagsTextLimits, LongTextsAreLinear) {
    std::size_t const count = 100'000;
    std::u16string const filler(100, u'.');
    EXPECT_EQ(tags.Expand(Repeated(count, filler + u"<x>")), Repeated(count, filler + u"b"));
    EXPECT_EQ(tags.Expand(Repeated(count, u"<tagifexist>") + u"a" + Repeated(count, u"</tagifexist>")), u"");
    std::u16string const kept = Repeated(count, u"<tagifexist>") + u"<x>" + Repeated(count, u"</tagifexist>");
    EXPECT_EQ(tags.Expand(kept).size(), kept.size() - 2);
    EXPECT_EQ(tags.Expand(u"<name" + Repeated(count, u"(") + Repeated(count, u")") + u">").size(), 4u + 2 * count);
    EXPECT_TRUE(lines.empty());
}

TEST_F(TagsTextLimits, GiveWhatTheStepsGiveOneByOne) {
    tags.Add(u"<half>", u"x><");
    tags.Add(u"<block>", u"<tagifexist>q");
    tags.Add(u"<done>", u"z</tagifexist>");
    std::vector<std::string> const pieces =
        vectors::Split("<,>,<x>,<e>,<no>,<half>,<outer>,<open>,me>,x,a,<tagifexist>,</tagifexist>,<tagendifexist>,"
                       "<block>,<done>,<name(,ext,), ",
                       ",");
    std::mt19937 random(5);
    int ended = 0;
    tags.SetTextLimits({50, 500, 10'000});
    for (int i = 0; i < 20'000; ++i) {
        std::u16string text;
        for (auto n = random() % 12; n > 0; --n)
            text += Wide(pieces[random() % pieces.size()]);
        CXTString<char16_t> expected(text.c_str());
        std::u16string const expanded = tags.Expand(text);
        if (support::ExpandLiterally(tags, CTags::CTagContext(), expected, 40)) {
            ASSERT_EQ(expanded.c_str(), expected) << testing::PrintToString(text);
            ++ended;
        }
    }
    EXPECT_GT(ended, 15'000);
}

} // namespace
