// SPDX-License-Identifier: MIT
// A thread that starts the desktop's component services for itself, on systems that have them by the thread. This
// system has none: the state is kept, so that a host's pairs of calls work, and there is nothing to start.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/process/custom_thread.h"

/// A registered thread with component services.
/// Threads: InitOle on the thread itself; otherwise as for CCustomThread.
class ZEL_API CWinCustomThread : public CCustomThread {
    ZEL_DECLARE_RUNTIME_CLASS(CWinCustomThread)

public:
    using CCustomThread::CCustomThread;

    /// Starts (true) or ends (false) the component services of the calling thread; once for several calls alike.
    /// @return whether they are in the state asked for.
    bool InitOle(bool on);

    /// Ends nothing by itself: a body that started the services ends them.
    /// @return 0, the exit code.
    int ExitInstance() { return 0; }

private:
    bool oleInitialised = false;
};
