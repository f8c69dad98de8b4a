// SPDX-License-Identifier: MIT
// Turns the faults of a program into C++ exceptions: SIGSEGV (11), SIGFPE (8) and SIGILL (4) are thrown as a
// `char const*` that points to "SIGSEGV", "SIGFPE" or "SIGILL".
//
// The exception starts at the faulting instruction, so only code that was compiled with -fnon-call-exceptions has a
// handler there; elsewhere the throw ends the process, as the signal would have. Destructors on the way run only
// where the compiler expected an exception. A stack that has overflowed leaves no room to throw, and an alternate
// stack would have the unwinder work beside a stack it cannot grow: such a fault ends the process.

#pragma once

namespace platform {

/// Installs the throwing handler for one of the three signals and keeps the handler that was there, a default one
/// too. A signal that has the throwing handler already keeps what was kept before.
/// @return false for any other signal, and where the system refuses.
/// Threads: one at a time, as for all of this file; the handler itself serves every thread.
bool InstallFaultHandler(int signal);

/// Puts back the handler that InstallFaultHandler has kept, and keeps it no more.
/// @return false when none is kept.
bool RestoreFaultHandler(int signal);

} // namespace platform
