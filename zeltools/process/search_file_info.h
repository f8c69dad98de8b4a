// SPDX-License-Identifier: MIT
// The small dialog that stands beside a file search: how many were found, where it is, and a cancel button. Here it is
// without its window: what a window would show is kept and can be asked for.
//
//     CSearchFileInfo search(nullptr);
//     while (Next(file) && !search.UserCancel()) {
//         search.SetSearchInformation(++count, folder, file);
//         search.PumpMessages();
//     }
//     search.Close();
//
// Threads: the main thread; OnCancel and UserCancel any.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"

#include <atomic>

class CWnd;

/// The dialog. It is open from its construction to Close.
class ZEL_API CSearchFileInfo {
public:
    /// @param parent  The window in front of which it stands, or null.
    explicit CSearchFileInfo(CWnd* parent);
    virtual ~CSearchFileInfo();
    CSearchFileInfo(CSearchFileInfo const&) = delete;
    CSearchFileInfo& operator=(CSearchFileInfo const&) = delete;

    /// Lets the window breathe, so that a click comes through. Without a window there is nothing to do.
    void PumpMessages();

    /// Whether the cancel button was clicked.
    bool UserCancel() const { return cancelled.load(); }

    /// Closes the dialog. What it showed can still be asked for.
    void Close() { open = false; }
    bool IsOpen() const { return open; }

    /// Sets the line that says what is searched for.
    void SetText(CXTString<char16_t> const& newText) { text = newText; }
    CXTString<char16_t> GetText() const { return text; }

    /// Shows how many files were found, and two lines: where the search is, and what it found last.
    void SetSearchInformation(unsigned int count, CXTString<char16_t> const& place, CXTString<char16_t> const& found);

    unsigned int GetCount() const { return fileCount; }
    CXTString<char16_t> GetPlace() const { return placeText; }
    CXTString<char16_t> GetFound() const { return foundText; }

    /// The click on the cancel button.
    virtual void OnCancel() { cancelled.store(true); }

private:
    bool open = true;
    std::atomic<bool> cancelled{false};
    unsigned int fileCount = 0;
    CXTString<char16_t> text;
    CXTString<char16_t> placeText;
    CXTString<char16_t> foundText;
};
