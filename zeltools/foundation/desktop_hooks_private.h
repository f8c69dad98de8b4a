// SPDX-License-Identifier: MIT
// What the lower floors ask of a desktop: boxes, the main window, and the width of texts and windows. SetDesktop
// (ui/desktop.h) makes the window seam's service answer here too; until it does, the headless one answers.

#pragma once

#include "zeltools/foundation/message_box.h"
#include "zeltools/foundation/xarray.h"
#include "zeltools/foundation/xstring.h"

#include <optional>

class CWnd;

namespace detail {

using enum ::MessageBoxButtons;
using enum ::MessageBoxAnswer;
using ::MessageBoxAnswer;
using ::MessageBoxButtons;

/// A desktop, as far as the lower floors need one.
class DesktopHooks {
public:
    virtual ~DesktopHooks() = default;

    /// Shows a message in a box that the active window owns, and waits for a button.
    /// @param buttons  With MessageBoxExclamation where the sign is to be a warning.
    virtual MessageBoxAnswer ShowMessageBox(CXTString<char16_t> const& text, MessageBoxButtons buttons) = 0;

    /// Lets the user choose a file.
    ///
    /// @param start    The name to begin with.
    /// @param loading  Tells a box that opens from one that saves.
    /// @param chosen   Receives the path.
    /// @return false when the box was cancelled, as it always is without a desktop.
    virtual bool ChooseFile(CXTString<char16_t> const& title, CXTString<char16_t> const& start, bool loading,
                            bool multiple, CXTString<char16_t>& chosen);

    /// Lets the user choose some of a list of names; false, with nothing chosen, when the box was cancelled.
    virtual bool ChooseFromList(CXArray<CXTString<char16_t>> const& list, CXArray<CXTString<char16_t>>& chosen);

    /// The width of a text in a window's font, in pixels; nothing where there is no way to measure it.
    virtual std::optional<int> MeasureText(CWnd* window, CXTString<char16_t> const& text) = 0;

    /// The width of a window's client area, in pixels; 0 without one.
    virtual int GetClientWidth(CWnd* window) = 0;

    /// The application's main window; null without one.
    virtual CWnd* GetMainWindow() { return nullptr; }

    /// Shows that the program is at work, until it is called as often with false as with true. Nothing by itself.
    virtual void ShowBusy(bool) {}
};

/// The desktop that is installed, or the headless one: its message boxes go to standard error and to the log and
/// answer with the button that does the least, and it measures nothing. Threads: any.
DesktopHooks& GetDesktopHooks();

/// The headless one, whatever is installed.
DesktopHooks& GetHeadlessHooks();

/// Installs a desktop, which must outlive every call that may use it; null goes back to the headless one.
/// Threads: any, but calls that are under way go on with the one that they found.
void SetDesktopHooks(DesktopHooks* hooks);

/// The button that does the least: No, Cancel or Abort where there is one, else OK.
MessageBoxAnswer SafestAnswer(MessageBoxButtons buttons);

} // namespace detail
