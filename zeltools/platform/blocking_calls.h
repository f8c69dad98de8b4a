// SPDX-License-Identifier: MIT
// How one thread gets another out of a blocking call of the system, such as an open on a mount that is dead.
//
// The signal that CancelSynchronousIo sends does nothing but interrupt, so the call returns with EINTR. Two things
// follow. A caller that repeats an interrupted call asks IsCallCancelled first; RetryInterrupted does so:
//
//     int descriptor = RetryInterrupted([&] { return ::open(name, flags); });
//
// And a signal that arrives just before the call is lost on it, so whoever cancels repeats it until the call is left.

#pragma once

#include "zeltools/platform/handle.h"

#include <cerrno>

namespace platform {

/// Interrupts the blocking call that the thread is in, if it is in one.
/// @return false when the signal could not be sent: the thread has ended, or the system has no room for a signal.
bool CancelSynchronousIo(HANDLE thread);

/// Marks the calls that the calling thread makes from Begin to End as ones that another thread may cancel. The pairs
/// nest. A cancellation is forgotten when the outermost one begins or ends.
void BeginCancellableCalls();
void EndCancellableCalls();

/// True when the calling thread stands between Begin and End and CancelSynchronousIo has reached it there.
bool IsCallCancelled();

/// Makes a call that answers -1 and sets errno, and repeats it for as long as a signal interrupts it that is no
/// cancellation. A cancelled call gives its -1 with EINTR.
template <class Call>
auto RetryInterrupted(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR && !IsCallCancelled()) {
        result = call();
    }
    return result;
}

} // namespace platform
