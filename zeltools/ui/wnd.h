// SPDX-License-Identifier: MIT
// A window, as the toolkit sees one: it asks where the window is and what its text says. What draws it belongs to the
// desktop (desktop.h).

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xrect.h"
#include "zeltools/foundation/xstring.h"

/// A window or a control. Threads: the one that owns it.
class ZEL_API CWnd {
public:
    CWnd() = default;
    CWnd(CWnd const&) = delete;
    CWnd& operator=(CWnd const&) = delete;
    virtual ~CWnd() = default;

    /// Whether there is a window behind the object: from its creation until it is destroyed.
    virtual bool IsWindow() const = 0;

    /// The window with its frame, in pixels of the screen.
    virtual CRect GetWindowRect() const = 0;

    /// Takes the input focus.
    virtual void SetFocus() = 0;

    /// Whether the window has the input focus.
    virtual bool HasFocus() const = 0;

    /// The title, or the whole text of a control; its lines end in CR LF.
    virtual CXTString<char16_t> GetWindowText() const = 0;

    /// Changes the title, or the whole text of a control; null is the empty text. It cannot be undone.
    virtual void SetWindowText(char16_t const* text) = 0;
};

/// The handle of a window is the window.
using HWND = CWnd*;
