// SPDX-License-Identifier: MIT
#include "zeltools/platform/linux/real_time_signal.h"

namespace platform {

int InstallRealTimeSignal(RealTimeHandler handler, int flags) {
    for (int signal = SIGRTMAX; signal >= SIGRTMIN; --signal) {
        struct sigaction present {};
        if (::sigaction(signal, nullptr, &present) != 0 || present.sa_handler != SIG_DFL) {
            continue;
        }
        struct sigaction action {};
        action.sa_sigaction = handler;
        action.sa_flags = SA_SIGINFO | flags;
        ::sigfillset(&action.sa_mask);
        if (::sigaction(signal, &action, nullptr) == 0) {
            return signal;
        }
    }
    return 0;
}

} // namespace platform
