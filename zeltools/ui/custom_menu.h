// SPDX-License-Identifier: MIT
// A popup menu as plain data: what it offers, in which order and under which ids. The desktop shows it (desktop.h).
//
//     CCustomMenu menu;
//     menu.InsertItem(menu.GetSortPosition(u"Oak"), 1, u"Oak");
//     menu.InsertItem(menu.GetSortPosition(u"ash"), 2, u"ash");     // ash, Oak
//     menu.InsertSubMenu(-1, u"More").InsertItem(-1, 3, u"Elm");
//     unsigned int const chosen = GetDesktop().TrackPopupMenu(menu, point, nullptr);

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

#include <memory>
#include <vector>

class CCustomMenu;

/// The first id of the toolkit's own menus. Ids below it are the hosts'.
inline constexpr unsigned int CustomMenuFirstId = 0xC000;

/// A line of a menu: an item, a separator, or what opens a submenu.
struct CustomMenuItem {
    unsigned int id = 0;       ///< the answer when it is chosen; 0 for separators and submenus
    CXTString<char16_t> label; ///< `&` marks the letter of the keyboard, `&&` is shown as `&`
    bool separator = false;
    std::unique_ptr<CCustomMenu> subMenu; ///< null for all but submenus
};

/// A menu. It owns its submenus, whose addresses hold as long as it lives. Threads: one at a time.
class ZEL_API CCustomMenu {
public:
    CCustomMenu();
    ~CCustomMenu();
    CCustomMenu(CCustomMenu&&) noexcept;
    CCustomMenu& operator=(CCustomMenu&&) noexcept;

    // ---- Asking ----

    /// The number of lines, separators and submenus included, without what is in the submenus.
    int GetItemCount() const { return static_cast<int>(items.size()); }

    /// A line of the menu.
    /// Errors: CXInvalidArgException outside 0 to GetItemCount() - 1.
    CustomMenuItem const& GetItem(int position) const;

    /// The first submenu with exactly this label; null when there is none. It does not look into submenus.
    CCustomMenu* FindSubMenu(CXTString<char16_t> const& label) const;

    /// Where a line with this label belongs in a menu that is kept in alphabetical order without regard to case:
    /// behind all that do not come after it. Separators are passed over.
    int GetSortPosition(CXTString<char16_t> const& label) const;

    // ---- Changing; a position that is negative or beyond the end puts the line last ----

    void InsertItem(int position, unsigned int id, CXTString<char16_t> const& label);
    void InsertSeparator(int position);

    /// Inserts a submenu, empty as yet.
    CCustomMenu& InsertSubMenu(int position, CXTString<char16_t> const& label);

private:
    CustomMenuItem& Insert(int position);

    std::vector<CustomMenuItem> items;
};
