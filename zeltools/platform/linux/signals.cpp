// SPDX-License-Identifier: MIT
#include "zeltools/platform/signals.h"

#include <csignal>
#include <optional>

namespace platform {

namespace {

struct Fault {
    int signal;
    char const* name;
    std::optional<struct sigaction> kept; // the action before ours, while ours is installed
};

Fault faults[] = {{SIGSEGV, "SIGSEGV", {}}, {SIGFPE, "SIGFPE", {}}, {SIGILL, "SIGILL", {}}};

Fault* FindFault(int signal) {
    for (Fault& fault : faults) {
        if (fault.signal == signal) {
            return &fault;
        }
    }
    return nullptr;
}

/// The unwinder goes through the system's signal frame to the instruction that failed. The handler never returns to
/// that frame, so nobody would take the signal out of the mask again: it is installed not to enter it.
void ThrowFault(int signal) {
    if (Fault const* fault = FindFault(signal)) {
        throw fault->name;
    }
}

} // namespace

bool InstallFaultHandler(int signal) {
    Fault* const fault = FindFault(signal);
    if (!fault) {
        return false;
    }
    struct sigaction action {};
    action.sa_handler = &ThrowFault;
    action.sa_flags = SA_NODEFER;
    ::sigemptyset(&action.sa_mask);
    struct sigaction present {};
    if (::sigaction(signal, &action, &present) != 0) {
        return false;
    }
    // Ours is there already after a close that left it in place; what it replaced is still to be put back.
    if (!fault->kept || present.sa_handler != &ThrowFault) {
        fault->kept = present;
    }
    return true;
}

bool RestoreFaultHandler(int signal) {
    Fault* const fault = FindFault(signal);
    if (!fault || !fault->kept) {
        return false;
    }
    bool const restored = ::sigaction(signal, &*fault->kept, nullptr) == 0;
    fault->kept.reset();
    return restored;
}

} // namespace platform
