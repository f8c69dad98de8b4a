// SPDX-License-Identifier: MIT
// An edit box of plain text.
//
//     edit.SetSel(0, -1);               // everything
//     edit.ReplaceSel(u"oak", true);    // undoable; the caret stands behind it

#pragma once

#include "zeltools/ui/wnd.h"

/// An edit box. Positions count UTF-16 units from 0; those beyond the text count as its end.
class ZEL_API CEdit : public CWnd {
public:
    /// Gives the selection: its first position and the one behind its last. Both are the caret's when it is empty.
    virtual void GetSel(int& first, int& last) const = 0;

    /// Selects from `first` up to, not including, `last`; the ends may come in either order.
    /// @param first  Negative: the selection shrinks to the caret at its end, and `last` says nothing.
    /// @param last   Negative: up to the end.
    virtual void SetSel(int first, int last) = 0;

    /// Puts a text in the place of the selection; the caret comes behind it.
    /// @param text     Null is the empty text.
    /// @param canUndo  False for a change that Undo does not take back, nor those before it.
    virtual void ReplaceSel(char16_t const* text, bool canUndo) = 0;

    /// Whether Undo would change something.
    virtual bool CanUndo() const = 0;

    /// Takes back the last change that can be undone, with the selection before it.
    /// @return whether there was one.
    virtual bool Undo() = 0;
};
