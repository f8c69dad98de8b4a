// SPDX-License-Identifier: MIT
#include "zeltools/tags/string_match_menu.h"

#include "zeltools/foundation/xload_string.h"
#include "zeltools/ui/custom_menu.h"
#include "zeltools/ui/desktop.h"
#include "zeltools/ui/edit.h"

namespace {

struct Operator {
    unsigned int id; // 0 for a separator
    unsigned int labelId;
    char16_t const* inserted;
    int caret; // where the caret comes, from the selection's start on; 0: behind what was inserted
};

constexpr Operator operators[] = {
    {CustomMenuFirstId + 0, 5318, u" & ", 0},
    {CustomMenuFirstId + 1, 5321, u" ^ ", 0},
    {CustomMenuFirstId + 2, 5317, u" ! ", 0},
    {CustomMenuFirstId + 3, 5322, u" () ", 2},
    {0, 0, nullptr, 0},
    {CustomMenuFirstId + 4, 5320, u" \"\" ", 2},
    {CustomMenuFirstId + 5, 5323, u"*", 0},
    {CustomMenuFirstId + 6, 5319, u"?", 0},
};

void InsertOperator(CEdit& edit, Operator const& chosen) {
    int first = 0;
    int last = 0;
    edit.GetSel(first, last);
    edit.ReplaceSel(chosen.inserted, true);
    if (chosen.caret != 0) {
        edit.SetSel(first + chosen.caret, first + chosen.caret);
    }
}

} // namespace

bool DisplayStringMatchMenu(CEdit* edit) {
    if (!edit) {
        return false;
    }
    CCustomMenu menu;
    for (Operator const& row : operators) {
        if (row.id == 0) {
            menu.InsertSeparator(-1);
        } else {
            menu.InsertItem(-1, row.id, xLoadString(row.labelId));
        }
    }
    unsigned int const chosen = GetDesktop().TrackPopupMenu(menu, edit->GetWindowRect().TopLeft(), edit);
    for (Operator const& row : operators) {
        if (row.id != 0 && row.id == chosen) {
            InsertOperator(*edit, row);
        }
    }
    edit->SetFocus();
    return true;
}
