// SPDX-License-Identifier: MIT
// Functions to call when the library closes. A process-wide object is made at its first use and registers its end:
//
//     if (!cache) {
//         cache = new Cache;
//         AddApplicationExitCallback(&DeleteCache, 0);
//     }

#pragma once

#include "zeltools/foundation/api.h"

/// A callback of this priority stays registered and is never called by the library.
inline constexpr unsigned int ExitCallbackNeverRun = 0xFFFFFFFE;

/// A callback of this priority is called while the host's windows still stand, by BeforeCloseQuenbyApplication. Where
/// that is never called, the close calls it behind all others.
inline constexpr unsigned int ExitCallbackBeforeClose = 0xFFFFFFFF;

/// Registers a function for the close of the library. Null is ignored; a function that is registered already keeps its
/// first priority.
///
/// The close takes a callback out of the list before it calls it, so one that is registered again in the meantime is
/// kept for the next close. It holds the application lock during the call: a callback must not wait for a thread that
/// needs it, and it must not throw.
/// @param priority  The lowest is called first; those of equal priority in no defined order. Two values are reserved.
/// Threads: any.
ZEL_API void AddApplicationExitCallback(void (*callback)(), unsigned int priority);

/// Takes a function out of the list; one that is not there is ignored.
/// Threads: any.
ZEL_API void RemoveApplicationExitCallback(void (*callback)());
