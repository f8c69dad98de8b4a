// SPDX-License-Identifier: MIT
#include "tests/support/literal_expansion.h"
#include "tests/support/printers.h"
#include "tests/support/repeated.h"
#include "tests/tags/table_tags.h"
#include "zeltools/foundation/log_file.h"
#include "zeltools/ui/memory_rich_edit_ctrl.h"

#include <gtest/gtest.h>
#include <random>
#include <span>
#include <string>

namespace {

struct Row {
    char const* name;
    char16_t const* text; ///< lines end in CR
    char16_t const* expanded;
};

/// <x> gives "b", <e> an empty text, <name> itself with its parameters, <outer> a text with a tag.
class TagsRichText : public testing::Test {
protected:
    TagsRichText() {
        tags.Add(u"<x>", u"b");
        tags.Add(u"<e>", u"");
        tags.Add(u"<name>", u"name");
        tags.Add(u"<outer>", u"[<x>]");
    }
    std::u16string Update(std::u16string const& text) {
        control.SetWindowText(text.c_str());
        tags.evaluations = 0;
        tags.UpdateRTFTags(context, control);
        return Text();
    }
    std::u16string Text() const { return static_cast<char16_t const*>(control.GetTextRange(0, -1)); }
    void Check(std::span<Row const> rows) {
        for (Row const& row : rows) {
            EXPECT_EQ(Update(row.text), row.expanded) << row.name;
        }
    }

    TableTags tags;
    CTags::CTagContext context;
    MemoryRichEditCtrl control;
};

TEST_F(TagsRichText, ReplacesTags) {
    Row const rows[] = {
        {"Empty", u"", u""},
        {"Tags", u"a <x>, <X>.", u"a b, b."},
        {"Parameters", u"<NAME( Ext ( d ) )>", u"name(ext(d))"},
        {"UnknownStays", u"<nosuch> <x> <", u"<nosuch> b <"},
        {"ReachesBackToAnyBracket", u"a < b <x>, <x>", u"a < b <x>, b"},
        {"OverALineBreak", u"<x\r>", u"<x\r>"},
        {"TrailingBlankLines", u"a\r\r<x>\r\r\r", u"a\r\rb"},
        {"BlankLinesBehindAnEmptyTag", u"a\r<e>\r", u"a"},
        {"LineOfBlanksStays", u"a\r \r", u"a\r "},
    };
    Check(rows);
}

TEST_F(TagsRichText, OneEmptyTagTakesABlockOut) {
    Row const rows[] = {
        {"Kept", u"1<tagifexist>a<x></tagifexist>2", u"1ab2"},
        {"Empty", u"1<tagifexist>a<e>c</tagifexist>2", u"12"},
        {"EmptyOutsideCountsNot", u"<e><tagifexist><x></tagifexist>2", u"b2"},
        {"LineOfABlockThatGoes", u"1\r<tagifexist>a\r<e></tagifexist>\r2", u"1\r2"},
        {"LinesOfMarkers", u"1\r<tagifexist>\ra <x>\r</tagifexist>\r2", u"1\ra b\r2"},
        {"InnerThatGoes", u"<tagifexist>1<tagifexist><e></tagifexist>2</tagifexist>", u"12"},
        // The inner opener forgets what the outer tag said.
        {"OuterEmptyIsForgotten", u"<tagifexist><e><tagifexist><x></tagifexist></tagifexist>.", u"b."},
        // Behind a closer that opens nothing, the character that follows it is passed over.
        {"StrayCloser", u"</tagifexist><x><x>", u"</tagifexist><x>b"},
        // Behind a block that stays, the scan goes on at its line number: at 0, and at 3, inside the stray closer.
        {"BackToLine0", u"</tagifexist><x><tagifexist>a</tagifexist>.", u"</tagifexist><x>a."},
        {"BackToLine3", u"</tagifexist><x>\r\r\r<tagifexist>a</tagifexist>.", u"</tagifexist>b\r\r\ra."},
    };
    Check(rows);
}

TEST_F(TagsRichText, AgreesWithItsPlainSteps) {
    char16_t const* const pieces[] = {
        u"<x>",  u"<e>", u"<outer>", u"<tagifexist>", u"</tagifexist>", u"<tagendifexist>", u"\r", u" ",
        u"text", u"<",   u">",       u"<nosuch>"};
    std::mt19937 random(20261123);
    for (int round = 0; round < 2000; ++round) {
        std::u16string text;
        for (std::size_t left = random() % 24; left > 0; --left) {
            text += pieces[random() % std::size(pieces)];
        }
        std::u16string expected = text;
        ASSERT_TRUE(support::ExpandRichTextLiterally(tags, context, expected, 10'000));
        ASSERT_EQ(Update(text), expected) << testing::PrintToString(text);
    }
}

TEST_F(TagsRichText, FormatsAroundATagSurvive) {
    CharacterFormat bold;
    bold.bold = true;
    control.SetWindowText(u"Title: <x>!");
    control.SetSel(7, 10);
    control.SetSelectionCharFormat(bold);
    tags.Add(u"<x>", u"bold");
    tags.UpdateRTFTags(context, control);
    ASSERT_EQ(Text(), u"Title: bold!");
    for (int i = 0; i < 12; ++i) {
        control.SetSel(i, i + 1);
        EXPECT_EQ(control.GetSelectionCharFormat().bold, i >= 7 && i < 11) << i;
    }
}

TEST_F(TagsRichText, DoesNothingWithoutWindowKindOrScan) {
    CTagInfo info;
    CXTString<char16_t> text(u"new");
    control.SetWindowText(u"<x>");
    control.SetSel(0, 1);
    EXPECT_EQ(tags.RTFScan(control, info), 0);
    EXPECT_EQ(tags.SetRTFTag(control, text), 0);
    EXPECT_EQ(Text(), u"<x>");
    context.kind = 2;
    EXPECT_EQ(Update(u"<x>\r"), u"<x>\r");
    context.kind = CTags::CTagContext::KindOfText;
    control.DestroyWindow();
    EXPECT_EQ(Update(u"<x>\r"), u"<x>\r");
}

TEST_F(TagsRichText, EndlessExpansionsStopWithALineInTheLog) {
    int lines = 0;
    SetLogCallback([](unsigned, CXTString<char16_t>, bool, void* user) { ++*static_cast<int*>(user); }, &lines);
    int refusals = 0;
    tags.Add(u"<patient>", [&](CTagInfo const&, CTagValue& value) {
        value.SetText(u"at last");
        return ++refusals > 50'000;
    });
    EXPECT_EQ(Update(u"<patient>."), u"at last.") << "it only takes long";
    tags.Add(u"<rows>", [&](CTagInfo const&, CTagValue& value) {
        value.SetText(++refusals < 60'000 ? u".<rows>" : u"!");
        return true;
    });
    EXPECT_EQ(Update(u"<rows>\r<x>").size(), 60'000U - 50'002U + 3U);
    EXPECT_EQ(lines, 0);

    tags.Add(u"<never>", [](CTagInfo const&, CTagValue&) { return false; });
    EXPECT_EQ(Update(u"<x><never>\r"), u"b<never>\r");
    EXPECT_EQ(lines, 1);
    tags.SetTextLimits({.nested = 5000, .length = 1000});
    tags.Add(u"<self>", u"<self>");
    tags.Add(u"<twins>", u"<e><twins>");
    tags.Add(u"<grows>", u"<grows> and more");
    EXPECT_EQ(Update(u"<x><self>"), u"b<self>");
    EXPECT_EQ(Update(u"<x><twins>"), u"b<e><twins>");
    EXPECT_LT(Update(u"<grows>").size(), 1100U);
    EXPECT_EQ(lines, 4);
    auto const nest = [](std::size_t depth) {
        return Repeated(depth, u"<tagifexist>") + Repeated(depth, u"</tagifexist>");
    };
    EXPECT_EQ(Update(nest(90)), u""); // 90 * 91 / 2 blocks are entered, since each closer sends the scan back
    EXPECT_EQ(lines, 4);
    EXPECT_NE(Update(nest(110)), u"");
    EXPECT_EQ(lines, 5);
    SetLogCallback(nullptr, nullptr);
}

} // namespace
