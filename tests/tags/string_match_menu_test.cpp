// SPDX-License-Identifier: MIT
#include "zeltools/tags/string_match_menu.h"

#include "tests/support/printers.h"
#include "tests/support/scripted_desktop.h"
#include "zeltools/ui/memory_edit.h"

#include <gtest/gtest.h>

namespace {

TEST(DisplayStringMatchMenu, OffersTheOperatorsInOrder) {
    EXPECT_FALSE(DisplayStringMatchMenu(nullptr));
    ScriptedDesktop desktop;
    MemoryEdit edit;
    edit.MoveWindow(CRect(10, 20, 110, 40));
    EXPECT_TRUE(DisplayStringMatchMenu(&edit));
    EXPECT_EQ(desktop.shown, "c000 && - table && leg = (table and leg)\n"
                             "c001 ^ - table ^ leg = (table or leg)\n"
                             "c002 ! - table !leg = (table but not leg)\n"
                             "c003 () - table (leg ^ drawer) = (table and (leg or drawer)\n"
                             "---\n"
                             "c004 \"\" - A group of words separated by one or more spaces\n"
                             "c005 * - zero or more of any character\n"
                             "c006 ? - Any single characters\n");
    EXPECT_EQ(desktop.shownAt, CPoint(10, 20));
    EXPECT_EQ(desktop.shownFor, &edit);
}

TEST(DisplayStringMatchMenu, PutsTheChosenOneInPlaceOfTheSelection) {
    struct Row {
        unsigned int id;
        char16_t const* text;
        int caret;
    } const rows[] = {
        {0xC000, u"table & leg", 8},  {0xC001, u"table ^ leg", 8},    {0xC002, u"table ! leg", 8},
        {0xC003, u"table () leg", 7}, {0xC004, u"table \"\" leg", 7}, {0xC005, u"table*leg", 6},
        {0xC006, u"table?leg", 6},    {0, u"table---leg", 8},         {0xC007, u"table---leg", 8},
    };
    ScriptedDesktop desktop;
    for (Row const& row : rows) {
        MemoryEdit edit;
        MemoryEdit other;
        edit.SetWindowText(u"table---leg");
        edit.SetSel(5, 8);
        desktop.answer = row.id;
        desktop.whileShown = [&](CCustomMenu const&) { other.SetFocus(); };
        EXPECT_TRUE(DisplayStringMatchMenu(&edit));
        int first = 0;
        int last = 0;
        edit.GetSel(first, last);
        EXPECT_EQ(edit.GetWindowText(), row.text);
        EXPECT_EQ(last, row.caret) << row.id;
        EXPECT_TRUE(edit.HasFocus());
        edit.Undo();
        EXPECT_EQ(edit.GetWindowText(), u"table---leg") << row.id;
    }
}

} // namespace
