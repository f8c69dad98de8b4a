// SPDX-License-Identifier: MIT
// The desktop service: the one door through which the toolkit asks for windows. A desktop library derives from it and
// installs its object; without one the base class answers, which shows nothing and decides for the least.
//
//     class QuietDesktop : public Desktop { ... };
//     SetDesktop(&desktop);
//     GetDesktop().TrackPopupMenu(menu, CPoint(10, 10), nullptr);    // the id that was chosen, or 0

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/message_box.h"
#include "zeltools/foundation/xarray.h"
#include "zeltools/foundation/xpoint.h"
#include "zeltools/foundation/xstring.h"

#include <memory>
#include <optional>

class CCustomMenu;
class CCustomRichEditCtrl;
class CEdit;
class CWnd;

/// A desktop; the base class is the headless one, and every operation says what that does.
/// Threads: menus and controls from the thread of the windows; the rest from any.
class ZEL_API Desktop {
public:
    Desktop() = default;
    Desktop(Desktop const&) = delete;
    Desktop& operator=(Desktop const&) = delete;
    virtual ~Desktop() = default;

    // ---- Menus and controls ----

    /// Shows a popup menu and waits for the choice.
    ///
    /// @param point  Its upper left corner, in pixels of the screen.
    /// @param owner  The window that it belongs to; null for the active one.
    /// @return the id of the chosen item; 0 when the menu was cancelled, as it always is without a desktop.
    virtual unsigned int TrackPopupMenu(CCustomMenu const& menu, CPoint const& point, CWnd* owner);

    /// Makes an edit box; without a desktop one in memory.
    virtual std::unique_ptr<CEdit> CreateEdit(CWnd* parent);

    /// Makes a control of rich text; without a desktop one in memory.
    virtual std::unique_ptr<CCustomRichEditCtrl> CreateRichEdit(CWnd* parent);

    // ---- Boxes ----

    /// Shows a message in a box that the active window owns, and waits for a button.
    ///
    /// Without a desktop the text goes to standard error and to the log, and the answer is the button that does the
    /// least.
    /// @param buttons  With MessageBoxExclamation where the sign is to be a warning.
    virtual MessageBoxAnswer ShowMessageBox(CXTString<char16_t> const& text, MessageBoxButtons buttons);

    /// Lets the user choose a file.
    ///
    /// @param start    The name to begin with.
    /// @param loading  Tells a box that opens from one that saves.
    /// @param chosen   Receives the path.
    /// @return false when the box was cancelled, as it always is without a desktop.
    virtual bool ChooseFile(CXTString<char16_t> const& title, CXTString<char16_t> const& start, bool loading,
                            bool multiple, CXTString<char16_t>& chosen);

    /// Lets the user choose some of a list of names; false, with nothing chosen, when the box was cancelled, as it
    /// always is without a desktop.
    virtual bool ChooseFromList(CXArray<CXTString<char16_t>> const& list, CXArray<CXTString<char16_t>>& chosen);

    // ---- Windows, measures and signs ----

    /// The application's main window, to which boxes belong that are given no other; null without a desktop.
    virtual CWnd* GetMainWindow();

    /// The width of a text in a window's font, in pixels; nothing where there is no way to measure it.
    virtual std::optional<int> MeasureText(CWnd* window, CXTString<char16_t> const& text);

    /// The width of a window's client area, in pixels; 0 without one.
    virtual int GetClientWidth(CWnd* window);

    /// Shows that the program is at work, until it is called as often with false as with true. Without a desktop
    /// nothing.
    virtual void ShowBusy(bool busy);
};

/// The desktop that is installed, or the headless one. Threads: any.
ZEL_API Desktop& GetDesktop();

/// Installs a desktop for the whole toolkit; null goes back to the headless one.
/// @param desktop  Must outlive every call that may use it: calls that are under way go on with the one they found.
/// Threads: any.
ZEL_API void SetDesktop(Desktop* desktop);
