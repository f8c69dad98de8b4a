// SPDX-License-Identifier: MIT
// How an exception that ends leaves the table of the threads' last exceptions, and how others ask for none in passing.

#pragma once

#include "zeltools/foundation/thread_exceptions.h"

#include <atomic>

namespace detail {

/// The number of entries in the table.
extern std::atomic<unsigned int> threadExceptionCount;

/// XDeleteThreadException for who comes by often: an archive does so twice for each object that it loads.
inline void DropThreadException() {
    if (threadExceptionCount.load(std::memory_order_relaxed) != 0) // a thread's own entry it always sees
        XDeleteThreadException();
}

/// Takes an exception out of the table, under whichever thread it stands there. It is not looked at. Any thread.
void ForgetThreadException(CXException const* exception);

} // namespace detail
