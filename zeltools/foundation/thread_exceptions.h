// SPDX-License-Identifier: MIT
// The table that keeps the last exception of each thread reachable between its throw and its end, for catch sites
// that do not hold the pointer:
//
//     catch (...) { XDeleteThreadException(); }

#pragma once

#include "zeltools/foundation/api.h"

class CXException;

/// Enters an exception as the calling thread's last one, just before it is thrown. An earlier entry of the thread is
/// replaced and not deleted: whoever catches it has its pointer. Null is ignored.
/// Threads: any. The first call of the process makes the table and registers its end with the exit callbacks.
ZEL_API void XSetThreadException(CXException* exception);

/// Deletes the calling thread's last exception and its entry; without one it does nothing.
/// Threads: any.
ZEL_API void XDeleteThreadException();
