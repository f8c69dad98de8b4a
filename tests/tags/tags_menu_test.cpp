// SPDX-License-Identifier: MIT
#include "tests/support/printers.h"
#include "tests/support/scripted_desktop.h"
#include "tests/tags/table_tags.h"
#include "zeltools/foundation/four_cc.h"
#include "zeltools/tags/tags_menu_private.h"
#include "zeltools/ui/menu_listener.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr unsigned int Wood = FourCC("WOOD");
constexpr unsigned int Metal = FourCC("METL");

/// A registry with tags of every kind. The walk follows the hash of the names, so ids are looked up by their labels.
class TagsMenu : public testing::Test {
protected:
    TagsMenu() {
        tags.Insert(u"<picture>", TAGDATA_FILENAME, Wood, 1, "Picture");
        tags.Insert(u"<taken>", TAGDATA_DATE | TAGFLAG_NOSUBMENU_WRITABLE, Wood, 2, "Taken");
        tags.Insert(u"<author>", TAGDATA_TEXT, Wood, 3, "author");
        tags.Insert(u"<width>", TAGDATA_UINT | TAGFLAG_READONLY, Metal, 4, "Width");
        tags.Insert(u"<plain>", TAGDATA_FILENAME | TAGFLAG_NOSUBMENU, Metal, 5, "Zinc");
        tags.Insert(u"<secret>", TAGDATA_TEXT | TAGFLAG_HIDDEN, Metal, 6, "Secret");
    }

    /// The menu as text, with "id" for every id: its order, and nothing of the hash's.
    std::string Shown(unsigned int flags, CHashTable<unsigned int>* included = nullptr,
                      CHashTable<unsigned int>* excluded = nullptr, CHashTable<unsigned int>* types = nullptr) {
        tags.DoPopupMenu(CPoint(3, 4), flags, included, excluded, types, nullptr);
        std::string text = desktop.shown;
        for (std::size_t at = 0; (at = text.find("c0", at)) != std::string::npos; at += 2) {
            text.replace(at, 4, "id");
        }
        return text;
    }

    TableTags tags;
    ScriptedDesktop desktop;
};

/// The lines of the forms of a date, so many blanks deep.
std::string DateFormats(std::size_t indent) {
    std::string lines;
    for (char const* form :
         {"Date (format: 01/09/2003)", "Time (format: 10:00)", "Date and time (format: 01/09/2003 10:00)",
          "Date (format: Monday 2 September 2003)", "Date and time (format: Monday 2 September 2003 10:00)"}) {
        lines += std::string(indent, ' ') + "id " + form + "\n";
    }
    return lines;
}

TEST_F(TagsMenu, ShowsTagsAndParametersInOrder) {
    std::string const formats = DateFormats(4);
    EXPECT_EQ(Shown(TagMenuNoCriteria | TagMenuAllTags | TagMenuAllWritableTags),
              "id No criteria\nid Add all tags\nid Add all tags that can be re-imported\n"
              "id author\n"
              "Conditionals tags >\n  id Empty tag evaluation test\n"
              "Picture >\n"
              "  id Full path (C:\\tmp\\example.jpg)\n  id Extension (.jpg)\n  id Kind of file (jpg file)\n"
              "  id Path (C:\\tmp\\)\n  id File size\n  id File name without extension (example)\n"
              "  id File name (example.jpg)\n  id File directory name (tmp)\n  id Path root (C:\\)\n"
              "  Creation date >\n" +
                  formats + "  Last modified date >\n" + formats + "Taken >\n" + DateFormats(2) +
                  "id Width\nid Zinc\n");
    EXPECT_EQ(desktop.shownAt, CPoint(3, 4));
}

TEST_F(TagsMenu, LeavesOutWhatIsNotWanted) {
    // Writable only: no <width>, no conditions, no kind of file, and dates without formats.
    EXPECT_EQ(
        Shown(TagMenuWritableOnly),
        "id author\nPicture >\n  id Full path (C:\\tmp\\example.jpg)\n  id Extension (.jpg)\n  id Path (C:\\tmp\\)\n"
        "  id File size\n  id File name without extension (example)\n  id File name (example.jpg)\n"
        "  id File directory name (tmp)\n  id Path root (C:\\)\n  id Creation date\n  id Last modified date\n"
        "id Taken\nid Zinc\n");
    CHashTable<unsigned int> metal;
    metal.Insert(Metal);
    EXPECT_EQ(Shown(0, &metal), "id Width\nid Zinc\n");
    CHashTable<unsigned int> types;
    types.Insert(TAGDATA_TEXT);
    types.Insert(TAGDATA_FILENAME);
    types.Insert(TAGDATA_DATE); // parameters work on the last two, so tags of theirs stay
    EXPECT_EQ(Shown(0, nullptr, &metal, &types),
              "Conditionals tags >\n  id Empty tag evaluation test\nPicture >\n  id File size\nTaken >\n");
}

TEST_F(TagsMenu, ChosenIdsYieldTexts) {
    Shown(TagMenuNoCriteria | TagMenuAllTags | TagMenuAllWritableTags);
    std::size_t const count = static_cast<std::size_t>(std::count(desktop.shown.begin(), desktop.shown.end(), '\n'));
    std::vector<std::u16string> texts;
    for (unsigned int id = 0xC000; id < 0xC000 + count; ++id) {
        int cancelled = -1;
        desktop.answer = id;
        texts.emplace_back(tags.DoPopupMenu(CPoint(), 0xE, nullptr, nullptr, nullptr, &cancelled));
        EXPECT_EQ(cancelled, 0);
    }
    // Ids rise without a gap in the order in which lines are made, so those of the flags come last.
    std::size_t const items = count - 5; // five lines open submenus
    EXPECT_EQ(texts[items], u"") << "not an id of this menu";
    EXPECT_EQ(texts[items - 3], u"");
    EXPECT_EQ(texts[items - 2], u"<alltags>");
    EXPECT_EQ(texts[items - 1], u"<allwritabletags>");
    for (std::u16string const text :
         {u"<author>", u"<width>", u"<plain>", u"<picture(ext)>", u"<taken(d+h+t)>", u"<picture(createdate(d))>",
          u"<picture(lastwritedate(d+t))>", u"<tagifexist></tagifexist>"}) {
        EXPECT_EQ(std::count(texts.begin(), texts.end(), text), 1) << testing::PrintToString(text);
    }
    int cancelled = 0;
    desktop.answer = 0;
    EXPECT_EQ(tags.DoPopupMenu(CPoint(), 0, nullptr, nullptr, nullptr, &cancelled), u"");
    EXPECT_EQ(cancelled, 1);
}

struct NotingListener final : CMenuListener {
    NotingListener() {
        AddMenuListener(this);
        AddMenuListener(this); // once is enough
    }
    ~NotingListener() override { RemoveMenuListener(this); }
    void OnSubMenuCreated(CCustomMenu* menu) override { created.push_back(menu); }
    void OnSubMenusGone() override { ++gone; }

    std::vector<CCustomMenu*> created;
    int gone = 0;
};

TEST_F(TagsMenu, ListenersAreToldOfSubmenus) {
    NotingListener listener;
    CCustomMenu const* conditions = nullptr;
    desktop.whileShown = [&](CCustomMenu const& menu) {
        conditions = menu.FindSubMenu(u"Conditionals tags");
        EXPECT_EQ(listener.gone, 0);
    };
    Shown(0);
    EXPECT_EQ(listener.created, (std::vector<CCustomMenu*>{const_cast<CCustomMenu*>(conditions)}));
    EXPECT_EQ(listener.gone, 1);

    desktop.whileShown = nullptr;
    tags.RemoveTagByClass(FourCC("TAGC"));
    Shown(0);
    EXPECT_EQ(listener.gone, 1) << "they were told of nothing";
}

TEST_F(TagsMenu, ClassLabelsAreLevelsOfSubmenus) {
    NotingListener listener;
    CCustomMenu menu;
    bool created = false;
    EXPECT_EQ(&detail::MenuOfClassLabel(menu, u"", created), &menu);
    EXPECT_EQ(&detail::MenuOfClassLabel(menu, u"//", created), &menu);
    EXPECT_FALSE(created);
    CCustomMenu const& lens = detail::MenuOfClassLabel(menu, u"Picture//Lens", created);
    EXPECT_TRUE(created);
    detail::MenuOfClassLabel(menu, u"Picture//camera/body//", created);
    detail::MenuOfClassLabel(menu, u"file", created);
    EXPECT_EQ(&detail::MenuOfClassLabel(menu, u"Picture////Lens", created), &lens);
    EXPECT_EQ(listener.created.size(), 4U);
    GetDesktop().TrackPopupMenu(menu, CPoint(), nullptr);
    EXPECT_EQ(desktop.shown, "file >\nPicture >\n  camera/body >\n  Lens >\n");
}

TEST(TagsMenuOfNothing, IsNotShown) {
    ScriptedDesktop desktop;
    TableTags tags;
    tags.RemoveTagByClass(FourCC("TAGC"));
    desktop.answer = 0xC000;
    int cancelled = -1;
    EXPECT_EQ(tags.DoPopupMenu(CPoint(), 0x2, nullptr, nullptr, nullptr, &cancelled), u"");
    EXPECT_EQ(cancelled, 0);
    EXPECT_EQ(desktop.shown, "");
}

} // namespace
