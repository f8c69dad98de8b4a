// SPDX-License-Identifier: MIT
// A desktop for the length of a test: it keeps each menu that it is asked to show as lines of text, and chooses the
// id that the test has set.

#pragma once

#include "zeltools/foundation/string_conversion.h"
#include "zeltools/ui/custom_menu.h"
#include "zeltools/ui/desktop.h"

#include <functional>
#include <string>

class ScriptedDesktop final : public Desktop {
public:
    ScriptedDesktop() { SetDesktop(this); }
    ~ScriptedDesktop() override { SetDesktop(nullptr); }

    unsigned int TrackPopupMenu(CCustomMenu const& menu, CPoint const& point, CWnd* owner) override {
        shown.clear();
        Draw(menu, 0);
        shownAt = point;
        shownFor = owner;
        if (whileShown) {
            whileShown(menu);
        }
        return answer;
    }

    unsigned int answer = 0;
    std::function<void(CCustomMenu const&)> whileShown;
    std::string shown; ///< a line each: two blanks a level, then "c000 label", "label >" or "---"
    CPoint shownAt;
    CWnd* shownFor = nullptr;

private:
    void Draw(CCustomMenu const& menu, std::size_t level) {
        for (int i = 0; i < menu.GetItemCount(); ++i) {
            CustomMenuItem const& item = menu.GetItem(i);
            std::string const label(XCW2A(item.label, xEncodingUtf8));
            shown += std::string(2 * level, ' ');
            if (item.separator) {
                shown += "---\n";
            } else if (item.subMenu) {
                shown += label + " >\n";
                Draw(*item.subMenu, level + 1);
            } else {
                char id[16];
                std::snprintf(id, sizeof id, "%04x ", item.id);
                shown += id + label + "\n";
            }
        }
    }
};
