// SPDX-License-Identifier: MIT
// A control of rich text in memory: what the headless desktop makes, so that a report with formats can be filled in
// without a window.
//
//     MemoryRichEditCtrl control;
//     control.SetWindowText(u"one\r\ntwo");
//     control.GetLineCount();              // 2
//     control.LineIndex(1);                // 4: the break is one character
//     control.GetTextRange(0, -1);         // "one\rtwo"
//     control.GetWindowText();             // "one\r\ntwo"

#pragma once

#include "zeltools/ui/memory_text_window.h"

/// A control of rich text in memory, complete: what CCustomRichEditCtrl promises. Threads: one at a time.
class ZEL_API MemoryRichEditCtrl final : public MemoryTextWindow<CCustomRichEditCtrl> {
public:
    MemoryRichEditCtrl() : MemoryTextWindow(true) {}

    int GetTextLength() const override;
    CXTString<char16_t> GetTextRange(int first, int last) const override;
    int FindText(unsigned int flags, CharacterRange within, char16_t const* sought,
                 CharacterRange& found) const override;

    int GetLineCount() const override;
    int LineFromChar(int position) const override;
    int LineIndex(int line) const override;
    int LineLength(int position) const override;

    CharacterFormat GetSelectionCharFormat() const override;
    void SetSelectionCharFormat(CharacterFormat const& format) override;

private:
    int FindDown(unsigned int flags, CharacterRange within, char16_t const* sought, int count) const;
    int FindUp(unsigned int flags, CharacterRange within, char16_t const* sought, int count) const;
    int PlaceOf(int position) const;
    int LineStart(int position) const;
};
