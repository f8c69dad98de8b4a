// SPDX-License-Identifier: MIT
#include "zeltools/process/progress_dlg.h"

#include "zeltools/foundation/xload_string.h"
#include "zeltools/foundation/xtime.h"
#include "zeltools/platform/threads.h"
#include "zeltools/process/progress_text.h"
#include "zeltools/process/thread_registry.h"
#include "zeltools/process/xsingle_lock.h"

namespace {

bool IsMainThread() {
    return platform::GetCurrentThreadId() == GetApplicationMainThreadID();
}

} // namespace

CProgressDlg::CProgressDlg(int titleId, unsigned int startMode) : mode(startMode) {
    if (titleId != 0) {
        info.title = xLoadString(static_cast<unsigned int>(titleId));
    }
}

CProgressDlg::~CProgressDlg() = default;

bool CProgressDlg::Create(CWnd*, CXTString<char16_t> const& title, CXTString<char16_t> const& status) {
    if (created.exchange(true)) {
        return false;
    }
    destroyPending.store(false);
    SetTitle(title);
    SetStatus(status);
    return true;
}

bool CProgressDlg::Create(CWnd* parent, unsigned int titleId, unsigned int statusId) {
    return Create(parent, titleId ? xLoadString(titleId) : CXTString<char16_t>(),
                  statusId ? xLoadString(statusId) : CXTString<char16_t>());
}

void CProgressDlg::SetTitle(CXTString<char16_t> const& title) {
    CXSingleLock const hold(&lock, true);
    info.title = title;
}

void CProgressDlg::SetErrorMsg(CXTString<char16_t> const& message) {
    CXSingleLock const hold(&lock, true);
    info.errorMessage = message;
}

void CProgressDlg::SetExternalThreadProcessName(CXTString<char16_t> const& name) {
    CXSingleLock const hold(&lock, true);
    info.processName = name;
}

void CProgressDlg::SetStatus(CXTString<char16_t> const& status, bool first) {
    CXSingleLock const hold(&lock, true);
    (first ? info.first : info.second).status = status;
}

void CProgressDlg::SetIndeterminate(bool indeterminate) {
    CXSingleLock const hold(&lock, true);
    info.indeterminate = indeterminate;
}

bool CProgressDlg::IsIndeterminate() const {
    CXSingleLock const hold(&lock, true);
    return info.indeterminate;
}

ProcessProgressInfo CProgressDlg::GetProgressInfo() const {
    CXSingleLock const hold(&lock, true);
    return info;
}

CXTString<char16_t> CProgressDlg::GetPercentText(bool first) const {
    CXSingleLock const hold(&lock, true);
    return percentText[first];
}

void CProgressDlg::PositionStored(bool first) {
    if (IsExternal()) {
        ReportPosition(first);
    } else {
        UpdatePercent(first);
    }
}

void CProgressDlg::ReportPosition(bool first) {
    ProcessProgressInfo report;
    {
        CXSingleLock const hold(&lock, true);
        ProcessProgressBar& bar = first ? info.first : info.second;
        bar.position = GetPos(first);
        GetRange(bar.lowest, bar.highest, first);
        report = info; // the listener works without the lock, while another thread may change a text
    }
    processProgressCallCallback(first ? ProcessProgressFirstPosition : ProcessProgressSecondPosition, report);
}

void CProgressDlg::UpdatePercent(bool first) {
    if (IsExternal() || !IsMainThread() || !created.load()) {
        return;
    }
    CXTString<char16_t> text = progressPercentText(GetPos(first));
    unsigned int const bits = mode.load();
    if ((bits & ProgressDlgShowTime) && (first || !(bits & ProgressDlgNoSecondTime))) {
        text += u" (";
        text += progressTimeText((timeGetTick() - GetStartTick(first)) / 1000);
        text += u")";
    }
    CXSingleLock const hold(&lock, true);
    percentText[first] = text;
}

void CProgressDlg::PumpMessages() {
    if (destroyPending.exchange(false)) {
        created.store(false);
    }
}

bool CProgressDlg::CheckCancelButton(bool reset) {
    bool const isMain = IsMainThread();
    if (IsExternal()) {
        void* user = nullptr;
        if (!cancelled.load() && processProgressGetCallback(user) &&
            processProgressCallCallback(ProcessProgressCancelQuestion, GetProgressInfo())) {
            cancelled.store(true);
        }
    } else if (isMain && created.load()) {
        PumpMessages();
    }
    return reset && isMain ? cancelled.exchange(false) : cancelled.load();
}

bool CProgressDlg::VerifyData() const {
    for (bool const first : {true, false}) {
        int lowest = 0;
        int highest = 0;
        GetRange(lowest, highest, first);
        if (GetPos(first) < lowest || GetPos(first) > highest || GetSubRangeCount(first) != 0) {
            return false;
        }
    }
    return true;
}
