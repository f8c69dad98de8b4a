// SPDX-License-Identifier: MIT
// What start and close need of the exit callbacks: the two passes, and the end of the table.

#pragma once

#include "zeltools/foundation/hash_methods.h"

/// An entry of the table. The function alone is its key.
struct ExitCallbackInfo {
    void (*callback)() = nullptr;
    unsigned int priority = 0;
};

template <>
struct CHashMethods<ExitCallbackInfo> {
    static unsigned int Hash(ExitCallbackInfo const& entry) { return CHashMethods<void (*)()>::Hash(entry.callback); }
    static bool IsEqual(ExitCallbackInfo const& a, ExitCallbackInfo const& b) { return a.callback == b.callback; }
};

namespace detail {

/// Calls each callback of priority ExitCallbackBeforeClose, without the lock, and then takes it out of the table. One
/// that a callback registers is called too, but each at most once in a pass.
void RunBeforeCloseCallbacks();

/// Takes every callback but those of priority ExitCallbackNeverRun out of the table and calls them, the lowest priority
/// first, all under the application lock.
void RunExitCallbacks();

/// Deletes the table with whatever is left in it; a later registration makes a new one.
void DeleteExitCallbackTable();

} // namespace detail
