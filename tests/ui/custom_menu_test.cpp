// SPDX-License-Identifier: MIT
#include "zeltools/ui/custom_menu.h"

#include "tests/support/scripted_desktop.h"
#include "tests/support/thrown.h"

#include <gtest/gtest.h>

TEST(CustomMenu, LinesStandInAlphabeticalOrderWithoutRegardToCase) {
    CCustomMenu menu;
    unsigned int id = 1;
    for (char16_t const* label : {u"oak", u"Elm", u"ash", u"OAK", u"Zelkova", u"_none"}) {
        menu.InsertItem(menu.GetSortPosition(label), id++, label);
    }
    menu.InsertSubMenu(menu.GetSortPosition(u"fir"), u"fir").InsertItem(-1, 9, u"silver");
    menu.InsertSeparator(1);
    menu.InsertItem(menu.GetSortPosition(u"Beech"), id, u"Beech"); // the separator is passed over

    ScriptedDesktop desktop;
    GetDesktop().TrackPopupMenu(menu, CPoint(), nullptr);
    // "_" lies between the capitals and the small letters, and labels are compared in small ones.
    EXPECT_EQ(desktop.shown, "0006 _none\n---\n0003 ash\n0007 Beech\n0002 Elm\nfir >\n  0009 silver\n0001 oak\n"
                             "0004 OAK\n0005 Zelkova\n");
}

TEST(CustomMenu, SubMenusAreFoundByTheirLabels) {
    CCustomMenu menu;
    menu.InsertItem(-1, 1, u"Wood");
    CCustomMenu& wood = menu.InsertSubMenu(-1, u"Wood");
    wood.InsertSubMenu(7, u"Hard");
    for (int i = 0; i < 100; ++i) {
        menu.InsertSubMenu(0, u"More"); // the address of a submenu stays
    }
    EXPECT_EQ(menu.FindSubMenu(u"Wood"), &wood);
    EXPECT_EQ(menu.FindSubMenu(u"wood"), nullptr);
    EXPECT_EQ(menu.FindSubMenu(u"Hard"), nullptr) << "one level deeper";
    for (int const position : {-1, 102}) {
        EXPECT_EQ(support::Thrown([&] { menu.GetItem(position); }), "argument");
    }
}
