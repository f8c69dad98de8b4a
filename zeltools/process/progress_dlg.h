// SPDX-License-Identifier: MIT
// The progress dialog: two bars with nested ranges, texts, and a cancel button. Here it is without its window: what a
// window would show is kept and can be asked for.
//
//     CProgressDlg dialog(0, ProgressDlgShowTime);
//     dialog.Create(nullptr, u"Loading", u"Textures");
//     dialog.PushSubRange(count, true);
//     for (int i = 0; i < count && !dialog.CheckCancelButton(false); ++i) {
//         Load(i, dialog);                         // pushes ranges of its own
//         dialog.SetSubRangePos(i + 1, true);
//     }
//     dialog.PullSubRange(true);
//
// In external thread mode the work runs on another thread than the window: positions go to the listener on top of the
// callback stack (progress_callbacks.h), and so does the question whether to cancel.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/process/progress_callbacks.h"
#include "zeltools/process/progress_ranges.h"
#include "zeltools/process/xcritical_section.h"

#include <atomic>

class CWnd;

/// Bits of the dialog's mode.
enum ProgressDlgMode : unsigned int {
    ProgressDlgNoSecondTime = 0x4000,    ///< The second bar's text has no time, whatever ProgressDlgShowTime says.
    ProgressDlgShowTime = 0x10000,       ///< The time since a bar started over stands behind its percentage.
    ProgressDlgExternalThread = 0x100000 ///< The work runs on another thread and reports to the callback stack.
};

/// The dialog. The bool argument `first` selects the bar: true the first, false the second.
/// Threads: one at a time runs the bars: the main thread, or in external thread mode the one that works. The texts, the
///          cancel flag and the questions about them are for any thread.
class ZEL_API CProgressDlg : public CProgressRanges {
public:
    /// @param titleId  The message number of the title that holds until Create gives another; 0 for none.
    /// @param mode     ProgressDlgMode.
    explicit CProgressDlg(int titleId = 0, unsigned int mode = 0);
    ~CProgressDlg() override;

    // Window

    void SetProgressDlgMode(unsigned int newMode) { mode.store(newMode); }
    unsigned int GetProgressDlgMode() const { return mode.load(); }

    /// Opens the dialog. From now on positions are kept.
    /// @param parent  The window in front of which it stands, or null.
    /// @return false when it is open already; nothing changes then.
    bool Create(CWnd* parent, CXTString<char16_t> const& title, CXTString<char16_t> const& status);

    /// The same with message numbers; 0 stands for the empty text.
    bool Create(CWnd* parent, unsigned int titleId, unsigned int statusId);

    /// Whether the dialog is open.
    bool IsCreated() const { return created.load(); }

    /// Closes the dialog the next time that CheckCancelButton looks at the window's messages, so that it may be called
    /// from within the work on one.
    void DelayDestroy() { destroyPending.store(true); }

    // Texts

    void SetTitle(CXTString<char16_t> const& title);
    void SetErrorMsg(CXTString<char16_t> const& message);
    void SetExternalThreadProcessName(CXTString<char16_t> const& name);

    /// Says what the work of a bar is at.
    void SetStatus(CXTString<char16_t> const& status, bool first = true);

    /// Says whether nobody knows how long it takes: a bar then only moves to and fro.
    void SetIndeterminate(bool indeterminate);
    bool IsIndeterminate() const;

    /// What a listener gets: the texts as they are, the positions and ranges as of the last SetPos of external thread
    /// mode.
    ProcessProgressInfo GetProgressInfo() const;

    /// What stands beside a bar: "42 %", with a time "42 % (1:15)". It follows SetPos outside external thread mode, on
    /// the main thread and while the dialog is open.
    CXTString<char16_t> GetPercentText(bool first) const;

    // Cancelling

    /// Sets the cancel flag, as the button does; or takes it back.
    void SetCancel(bool cancel = true) { cancelled.store(cancel); }

    /// Whether the button can be clicked. It does not keep SetCancel from working.
    void EnableCancel(bool enable) { cancelEnabled.store(enable); }
    bool IsCancelEnabled() const { return cancelEnabled.load(); }

    /// Whether the user wants to stop. In external thread mode the listener on top of the callback stack is asked, as
    /// long as the flag is not set; otherwise the main thread lets the window breathe, so that a click comes through.
    /// @param reset  On the main thread, clears the flag after it was read.
    bool CheckCancelButton(bool reset);

    /// Whether both bars are in order: each position within its range, and no nested range left open. For the end of
    /// an operation.
    bool VerifyData() const;

protected:
    /// Writes the text beside a bar. Nothing in external thread mode, off the main thread, and without a window.
    void UpdatePercent(bool first);

    bool KeepsPositions() const override { return created.load(); }
    void PositionStored(bool first) override;

private:
    bool IsExternal() const { return (mode.load() & ProgressDlgExternalThread) != 0; }
    void PumpMessages();
    void ReportPosition(bool first);

    std::atomic<unsigned int> mode;
    std::atomic<bool> created{false};
    std::atomic<bool> destroyPending{false};
    std::atomic<bool> cancelled{false};
    std::atomic<bool> cancelEnabled{true};
    mutable CXCriticalSection lock;
    ProcessProgressInfo info;           // guarded by lock
    CXTString<char16_t> percentText[2]; // of the second bar and the first; guarded by lock
};
