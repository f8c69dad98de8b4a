// SPDX-License-Identifier: MIT
#include "zeltools/ui/custom_menu.h"

#include "zeltools/foundation/invalid_arg.h"

CCustomMenu::CCustomMenu() = default;
CCustomMenu::~CCustomMenu() = default;
CCustomMenu::CCustomMenu(CCustomMenu&&) noexcept = default;
CCustomMenu& CCustomMenu::operator=(CCustomMenu&&) noexcept = default;

CustomMenuItem const& CCustomMenu::GetItem(int position) const {
    if (position < 0 || position >= GetItemCount()) {
        detail::ThrowInvalidArg();
    }
    return items[static_cast<std::size_t>(position)];
}

CCustomMenu* CCustomMenu::FindSubMenu(CXTString<char16_t> const& label) const {
    for (CustomMenuItem const& item : items) {
        if (item.subMenu && item.label == label) {
            return item.subMenu.get();
        }
    }
    return nullptr;
}

int CCustomMenu::GetSortPosition(CXTString<char16_t> const& label) const {
    int position = 0;
    for (CustomMenuItem const& item : items) {
        if (!item.separator && item.label.CompareNoCase(label) > 0) {
            break;
        }
        ++position;
    }
    return position;
}

void CCustomMenu::InsertItem(int position, unsigned int id, CXTString<char16_t> const& label) {
    CustomMenuItem& item = Insert(position);
    item.id = id;
    item.label = label;
}

void CCustomMenu::InsertSeparator(int position) {
    Insert(position).separator = true;
}

CCustomMenu& CCustomMenu::InsertSubMenu(int position, CXTString<char16_t> const& label) {
    CustomMenuItem& item = Insert(position);
    item.label = label;
    item.subMenu = std::make_unique<CCustomMenu>();
    return *item.subMenu;
}

CustomMenuItem& CCustomMenu::Insert(int position) {
    bool const inside = position >= 0 && position < GetItemCount();
    return *items.emplace(inside ? items.begin() + position : items.end());
}
