// SPDX-License-Identifier: MIT
// What the controls in memory have in common: a place, the focus among themselves, a text with a selection, and undo.

#pragma once

#include "zeltools/ui/custom_rich_edit_ctrl.h"
#include "zeltools/ui/edit.h"

#include <memory>

namespace detail {
class MemoryText;
}

/// The common part of the controls in memory; Base is the control that it implements. It has a window, which takes no
/// place and is drawn nowhere, until DestroyWindow.
template <class Base>
class ZEL_API MemoryTextWindow : public Base {
public:
    ~MemoryTextWindow() override;

    bool IsWindow() const override { return hasWindow; }
    CRect GetWindowRect() const override { return rect; }
    void SetFocus() override;
    bool HasFocus() const override;
    CXTString<char16_t> GetWindowText() const override;
    void SetWindowText(char16_t const* newText) override;

    void GetSel(int& first, int& last) const override;
    void SetSel(int first, int last) override;
    void ReplaceSel(char16_t const* newText, bool canUndo) override;
    bool CanUndo() const override;
    bool Undo() override;

    /// Says where the window would be, in pixels of the screen.
    void MoveWindow(CRect const& newRect) { rect = newRect; }

    /// Takes the window away. The text stays and can be worked on.
    void DestroyWindow();

protected:
    /// @param breaksAreOne  Whether a line break is one character of the text, CR.
    explicit MemoryTextWindow(bool breaksAreOne);

    std::unique_ptr<detail::MemoryText> text; ///< never null

private:
    CRect rect;
    bool hasWindow = true;
};

extern template class MemoryTextWindow<CEdit>;
extern template class MemoryTextWindow<CCustomRichEditCtrl>;
