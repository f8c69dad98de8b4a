// SPDX-License-Identifier: MIT
// The process-wide handlers that a start installs and a close puts back.

#pragma once

namespace detail {

/// Turns SIGSEGV, SIGFPE and SIGILL of this process into exceptions, keeping the handlers that were there.
void InstallSignalHandlers();

/// Puts the kept signal handlers back and forgets them.
void RestoreSignalHandlers();

/// Installs a handler for invalid parameters that does nothing. The one before is kept and, other than the signal
/// handlers, never put back: code that runs after the close may rely on going on.
void InstallInvalidParameterHandler();

} // namespace detail
