// SPDX-License-Identifier: MIT
// Whom the copy-safe routines tell of a call that would have run over its target. The call itself has already been
// refused; a host may want to know, or to end the process.
//
// Threads: setting is for the main thread; the handler is called by the thread that made the call.

#pragma once

namespace platform {

using InvalidParameterHandler = void (*)();

/// Chooses the handler, null for none, which is also the state at the start.
/// @return the handler before.
InvalidParameterHandler SetInvalidParameterHandler(InvalidParameterHandler handler);

/// Calls the handler, if there is one.
void ReportInvalidParameter();

} // namespace platform
