// SPDX-License-Identifier: MIT
#include "zeltools/process/win_custom_thread.h"

ZEL_IMPLEMENT_RUNTIME_CLASS(CWinCustomThread, CCustomThread, RuntimeClassNotSerializable)

bool CWinCustomThread::InitOle(bool on) {
    oleInitialised = on;
    return true;
}
