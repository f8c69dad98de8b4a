// SPDX-License-Identifier: MIT
#include "zeltools/files/io_options.h"

#include "zeltools/files/display_options_private.h"
#include "zeltools/files/io_result.h"
#include "zeltools/foundation/desktop_hooks_private.h"
#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/platform/clock.h"
#include "zeltools/process/xsingle_lock.h"

namespace {

constexpr unsigned int DisplayBits = 0xFFFF0000;

} // namespace

CIoOptions::CIoOptions(bool hostFlag) : flags(hostFlag ? 1 : 0), startTick(platform::GetTickCount64()) {
    detail::ReadDisplayOptions();
}

CIoOptions::~CIoOptions() {
    if ((flags & IoOptionsKeepDisplay) != 0 && (flags & DisplayBits) != 0) {
        detail::SetDisplayOptions(flags & DisplayBits);
    }
}

void CIoOptions::SetFlag(IoOptionsFlags bits, bool set) {
    flags = set ? flags | bits : flags & ~static_cast<unsigned int>(bits);
    if (set && (bits & IoOptionsKeepDisplay) != 0) {
        flags |= detail::GetDisplayOptions();
    }
}

void CIoOptions::AddLogInfo(IoLogInfo::loglevel level, CXTString<char16_t> const& text) {
    CXSingleLock const hold(&logLock, true);
    if (IsLogEnabled()) {
        if (static_cast<int>(level) < 0) {
            detail::ThrowInvalidArg();
        }
        log.Add({level, text});
    }
}

void CIoOptions::AddLogInfo(IoLogInfo::loglevel level, unsigned int code, char16_t const* fileName) {
    if (IsLogEnabled()) { // spares the text
        AddLogInfo(level, detail::GetIoResultText(true, static_cast<int>(code), fileName));
    }
}

void CIoOptions::DisplayLog(unsigned int, CWnd*) {
    CXTString<char16_t> lines;
    {
        CXSingleLock const hold(&logLock, true);
        if (log.IsEmpty()) {
            return;
        }
        lines = log[0].text;
        for (int i = 1; i < log.GetSize(); ++i) {
            lines += u'\n';
            lines += log[i].text;
        }
    }
    // Without the lock: a box stays open for as long as the user likes, and the workers may go on logging.
    detail::GetDesktopHooks().ShowMessageBox(lines, detail::MessageBoxOk);
}
