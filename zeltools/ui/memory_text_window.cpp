// SPDX-License-Identifier: MIT
#include "zeltools/ui/memory_text_window.h"

#include "zeltools/ui/memory_text_private.h"

#include <atomic>

namespace {

std::atomic<CWnd const*> focused = nullptr;

void LoseFocus(CWnd const* window) {
    focused.compare_exchange_strong(window, nullptr);
}

} // namespace

template <class Base>
MemoryTextWindow<Base>::MemoryTextWindow(bool breaksAreOne)
    : text(std::make_unique<detail::MemoryText>(breaksAreOne)) {}

template <class Base>
MemoryTextWindow<Base>::~MemoryTextWindow() {
    LoseFocus(this);
}

template <class Base>
void MemoryTextWindow<Base>::SetFocus() {
    if (hasWindow) {
        focused = this;
    }
}

template <class Base>
bool MemoryTextWindow<Base>::HasFocus() const {
    return focused == this;
}

template <class Base>
CXTString<char16_t> MemoryTextWindow<Base>::GetWindowText() const {
    CXTString<char16_t> lines = text->GetRange(0, -1);
    if (text->HasOneCharacterBreaks()) {
        lines.Replace(u"\r", u"\r\n");
    }
    return lines;
}

template <class Base>
void MemoryTextWindow<Base>::SetWindowText(char16_t const* newText) {
    text->SetText(newText);
}

template <class Base>
void MemoryTextWindow<Base>::GetSel(int& first, int& last) const {
    first = text->GetSelection().first;
    last = text->GetSelection().last;
}

template <class Base>
void MemoryTextWindow<Base>::SetSel(int first, int last) {
    text->Select(first, last);
}

template <class Base>
void MemoryTextWindow<Base>::ReplaceSel(char16_t const* newText, bool canUndo) {
    text->ReplaceSelection(newText, canUndo);
}

template <class Base>
bool MemoryTextWindow<Base>::CanUndo() const {
    return text->CanUndo();
}

template <class Base>
bool MemoryTextWindow<Base>::Undo() {
    return text->Undo();
}

template <class Base>
void MemoryTextWindow<Base>::DestroyWindow() {
    hasWindow = false;
    LoseFocus(this);
}

template class MemoryTextWindow<CEdit>;
template class MemoryTextWindow<CCustomRichEditCtrl>;
