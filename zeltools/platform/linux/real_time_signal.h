// SPDX-License-Identifier: MIT
// The signals with which one thread reaches another.

#pragma once

#include <csignal>

namespace platform {

using RealTimeHandler = void (*)(int signal, siginfo_t* information, void* context);

/// Takes a real-time signal that nobody else handles, from the highest number down, and installs the handler with
/// every signal blocked while it runs.
/// @param flags  SA_RESTART where an interrupted call is to go on, 0 where it is to end. SA_SIGINFO is added.
/// @return the signal's number, or 0 when all are taken.
int InstallRealTimeSignal(RealTimeHandler handler, int flags);

} // namespace platform
