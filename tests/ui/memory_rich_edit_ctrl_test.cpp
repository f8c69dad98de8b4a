// SPDX-License-Identifier: MIT
#include "zeltools/ui/memory_rich_edit_ctrl.h"

#include "zeltools/ui/memory_edit.h"

#include <climits>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace {

std::u16string TextOf(CCustomRichEditCtrl const& control) {
    return static_cast<char16_t const*>(control.GetTextRange(0, -1));
}

CharacterRange SelectionOf(CEdit const& control) {
    CharacterRange selection;
    control.GetSel(selection.first, selection.last);
    return selection;
}

/// What a control must say of its lines, worked out character by character.
void ExpectLines(CCustomRichEditCtrl const& control, std::u16string const& text) {
    std::vector<int> starts{0};
    std::vector<int> lineOf;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        lineOf.push_back(static_cast<int>(starts.size()) - 1);
        if (i < text.size() && text[i] == u'\r') {
            starts.push_back(static_cast<int>(i) + 1);
        }
    }
    ASSERT_EQ(control.GetLineCount(), static_cast<int>(starts.size()));
    for (std::size_t line = 0; line < starts.size(); ++line) {
        ASSERT_EQ(control.LineIndex(static_cast<int>(line)), starts[line]) << line;
    }
    EXPECT_EQ(control.LineIndex(static_cast<int>(starts.size())), -1);
    for (std::size_t i = 0; i <= text.size(); ++i) {
        int const position = static_cast<int>(i);
        ASSERT_EQ(control.LineFromChar(position), lineOf[i]) << i;
        std::size_t const end = std::min(text.find(u'\r', i), text.size());
        ASSERT_EQ(control.LineLength(position), static_cast<int>(end) - starts[static_cast<std::size_t>(lineOf[i])]);
    }
}

} // namespace

TEST(MemoryRichEditCtrl, LineBreaksAreOneCharacter) {
    MemoryRichEditCtrl control;
    for (char16_t const* text : {u"", u"\r\n", u"one\r\ntwo\nthree\rfour", u"\n\n\r\n", u"end\r"}) {
        control.SetWindowText(text);
        ExpectLines(control, TextOf(control));
    }
    control.SetWindowText(u"one\r\ntwo\n\rsix");
    EXPECT_EQ(TextOf(control), u"one\rtwo\r\rsix");
    EXPECT_EQ(control.GetWindowText(), u"one\r\ntwo\r\n\r\nsix");
    control.SetSel(5, 6);
    EXPECT_EQ(control.LineFromChar(-1), 1);
    EXPECT_EQ(control.LineIndex(-1), 4);
    EXPECT_EQ(control.LineLength(-1), 3);
}

TEST(MemoryRichEditCtrl, FindsWithinTheRange) {
    struct Row {
        char16_t const* sought;
        unsigned int flags;
        CharacterRange within;
        int first;
    } const rows[] = {
        {u"oak", FindTextDown, {0, -1}, 0},
        {u"oak", FindTextDown | FindTextMatchCase, {0, -1}, 4},
        {u"oak", FindTextDown, {1, -1}, 4},
        {u"oak", FindTextDown, {4, 7}, 4},
        {u"oak", FindTextDown, {4, 6}, -1}, // the match must lie in the range as a whole
        {u"oak", FindTextDown, {9, 2}, -1},
        {u"oak", FindTextDown | FindTextWholeWord, {1, -1}, 12}, // "oak_" is another word
        {u"k\ro", FindTextDown, {0, -1}, -1},                    // the break stands behind "oak_"
        {u"_\roa", FindTextDown, {0, -1}, 7},
        {u"oak", 0, {-1, -1}, 12}, // upwards from the end
        {u"oak", 0, {12, -1}, 4},
        {u"oak", 0, {6, -1}, 0},
        {u"oak", 0, {6, 1}, -1},
        {u"", FindTextDown, {0, -1}, -1},
        {nullptr, FindTextDown, {0, -1}, -1},
        {u"oak", FindTextDown, {INT_MAX, -1}, -1},
        {u"oak", FindTextDown, {INT_MIN, INT_MAX}, 0},
    };
    MemoryRichEditCtrl control;
    control.SetWindowText(u"OAK oak_\r\noa oak");
    for (Row const& row : rows) {
        CharacterRange found{-7, -7};
        EXPECT_EQ(control.FindText(row.flags, row.within, row.sought, found), row.first) << &row - rows;
        CharacterRange const expected{row.first, row.first + 3 + (row.first == 7)};
        EXPECT_EQ(found, row.first < 0 ? (CharacterRange{-7, -7}) : expected) << &row - rows;
    }
}

TEST(MemoryRichEditCtrl, ReplacedTextTakesTheFormatOfTheFirstCharacter) {
    MemoryRichEditCtrl control;
    CharacterFormat bold;
    bold.bold = true;
    CharacterFormat red;
    red.color = 0xFF;
    control.SetWindowText(u"plain bold red");
    control.SetSel(6, 10);
    control.SetSelectionCharFormat(bold);
    control.SetSel(11, 14);
    control.SetSelectionCharFormat(red);
    auto const formatAt = [&](int position) {
        control.SetSel(position, position + 1);
        return control.GetSelectionCharFormat();
    };
    control.SetSel(8, 12); // from bold to red
    control.ReplaceSel(u"LD R", true);
    EXPECT_EQ(formatAt(11), bold);
    EXPECT_EQ(formatAt(12), red);
    control.SetSel(6, 6);
    control.ReplaceSel(u"_", true); // takes what stands before it
    EXPECT_EQ(formatAt(6), CharacterFormat());
    control.SetSel(0, 0);
    control.SetSelectionCharFormat(red);
    control.ReplaceSel(u"!", true);
    EXPECT_EQ(formatAt(0), red);
    EXPECT_EQ(formatAt(1), CharacterFormat());
    while (control.Undo()) {
    }
    EXPECT_EQ(TextOf(control), u"plain bold red");
    EXPECT_EQ(formatAt(6), CharacterFormat());
}

TEST(MemoryRichEditCtrl, AgreesWithAPlainStringThroughRandomChangesAndBack) {
    MemoryRichEditCtrl control;
    std::u16string model;
    std::vector<std::u16string> history;
    std::mt19937 random(20261123);
    char16_t const* const pieces[] = {u"", u"a", u"\r\r", u"word\r", u" ", u"longer words"};
    int const hostile[] = {INT_MIN, -1, INT_MAX};
    for (int step = 0; step < 600; ++step) {
        auto const hostileOr = [&](int position) { return random() % 20 == 0 ? hostile[random() % 3] : position; };
        int const near = static_cast<int>(random() % (model.size() + 3));
        int const first = hostileOr(near);
        int const last = hostileOr(near + static_cast<int>(random() % 7));
        control.SetSel(first, last);
        auto const [from, to] = SelectionOf(control);
        ASSERT_TRUE(0 <= from && from <= to && to <= static_cast<int>(model.size()));
        if (first >= 0 && last >= 0) {
            int const length = static_cast<int>(model.size());
            ASSERT_EQ(from, std::min({first, last, length}));
            ASSERT_EQ(to, std::min(std::max(first, last), length));
        }
        char16_t const* const piece = pieces[random() % std::size(pieces)];
        if (from != to || *piece != 0) {
            history.push_back(model);
        }
        model.replace(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from), piece);
        control.ReplaceSel(piece, true);
        ASSERT_EQ(TextOf(control), model) << step;
        ExpectLines(control, model);
        for (int i = 0; i < 8; ++i) { // what a search has passed over is remembered through the changes
            char16_t const* const mark = random() % 4 == 0 ? u"\r" : u" ";
            std::size_t const start = random() % (model.size() + 2);
            CharacterRange found;
            ASSERT_EQ(control.FindText(FindTextDown, {static_cast<int>(start), -1}, mark, found),
                      static_cast<int>(model.find(mark, start)))
                << step;
        }
    }
    int undone = 0;
    for (; control.Undo(); ++undone) {
        ASSERT_EQ(TextOf(control), history.back());
        history.pop_back();
    }
    EXPECT_EQ(undone, 100) << "the oldest changes are forgotten";
    ExpectLines(control, TextOf(control));
}

TEST(MemoryEdit, KeepsLineBreaksAndOneFocus) {
    MemoryEdit edit;
    MemoryRichEditCtrl other;
    edit.SetWindowText(u"one\r\ntwo");
    edit.SetSel(2, -1);
    EXPECT_EQ(SelectionOf(edit), (CharacterRange{2, 8}));
    edit.SetSel(-1, 3);
    EXPECT_EQ(SelectionOf(edit), (CharacterRange{8, 8}));
    edit.ReplaceSel(u"\n", true);
    EXPECT_EQ(edit.GetWindowText(), u"one\r\ntwo\n");
    edit.ReplaceSel(u"!", false);
    EXPECT_FALSE(edit.CanUndo()) << "a change that cannot be taken back moves what those before it changed";

    edit.SetFocus();
    other.SetFocus();
    EXPECT_FALSE(edit.HasFocus());
    EXPECT_TRUE(other.HasFocus());
    other.DestroyWindow();
    EXPECT_FALSE(other.HasFocus() || other.IsWindow());
    other.SetFocus();
    EXPECT_FALSE(other.HasFocus()) << "there is nothing that could have it";
}
