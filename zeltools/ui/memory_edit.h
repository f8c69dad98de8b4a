// SPDX-License-Identifier: MIT
// An edit box in memory: what the headless desktop makes, and what tests type into.
//
//     MemoryEdit edit;
//     edit.SetWindowText(u"table");
//     edit.SetSel(5, 5);
//     edit.ReplaceSel(u" leg", true);    // "table leg"

#pragma once

#include "zeltools/ui/memory_text_window.h"

/// An edit box in memory. Line breaks are kept as they come. Threads: one at a time.
class ZEL_API MemoryEdit final : public MemoryTextWindow<CEdit> {
public:
    MemoryEdit() : MemoryTextWindow(false) {}
};
