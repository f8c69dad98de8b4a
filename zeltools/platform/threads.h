// SPDX-License-Identifier: MIT
// Threads of the system: start, priority, suspension, hard end. CXThread is made of these and is what everything
// else uses.
//
//     unsigned long long id = 0;
//     HANDLE thread = BeginThreadEx(0, &Body, data, CreateSuspended, &id);
//     SetThreadPriority(thread, -1);
//     ResumeThread(thread);
//     WaitForThread(thread, WaitForever);
//     CloseThread(thread);
//
// A handle keeps what is known of a thread, not the thread: closing it stops nothing, and a thread that has ended
// still answers through the handles that are open. Every function may be called from any thread. Where one fails,
// GetLastError holds 6 for a null handle, 87 for an id that names no thread of this process, 5 where the system
// refuses and 8 where it has no room for one more thread.

#pragma once

#include "zeltools/platform/handle.h"

#include <cstddef>

namespace platform {

/// The body of a thread; what it returns is the thread's exit code.
using ThreadBody = unsigned int (*)(void* argument);

/// Flag of BeginThreadEx: the body does not run before ResumeThread.
inline constexpr unsigned int CreateSuspended = 4;

/// What SuspendThread and ResumeThread answer where they fail.
inline constexpr unsigned int SuspendFailed = 0xFFFFFFFF;

/// A time-out that never runs out.
inline constexpr unsigned int WaitForever = 0xFFFFFFFF;

/// The exit code of a thread that has not ended.
inline constexpr unsigned int StillActive = 259;

/// Starts a thread.
///
/// @param stackSize  Bytes; 0 takes the system's default, less than the system's minimum is raised to it.
/// @param flags      0 or CreateSuspended.
/// @param id         Receives the thread's id when it is not null; untouched on failure.
/// @return a handle to be closed with CloseThread, or null.
HANDLE BeginThreadEx(std::size_t stackSize, ThreadBody body, void* argument, unsigned int flags,
                     unsigned long long* id);

/// Adds one to the thread's suspend count and answers the count before. When it answers, the thread runs no more
/// of its code: it stands in a signal handler until the count is back at 0. Whatever lock it holds stays held, the
/// allocator's too, so the caller allocates nothing and takes no lock until it has resumed or ended the thread.
/// A blocking call of the thread goes on after the resumption, or ends early if it is a wait or a sleep.
unsigned int SuspendThread(HANDLE thread);

/// Takes one from the suspend count and answers the count before; 0 says that the thread was not suspended.
unsigned int ResumeThread(HANDLE thread);

/// Stops a thread for good, whether it computes, blocks or is suspended: no destructor runs and no lock is
/// released. For the end of the process only.
///
/// The thread is not taken from the system but parked for ever with all signals blocked. To end it there would
/// leave the C library with a thread that is gone without its knowledge, and to unwind it would run the very code
/// that would not listen. It costs its stack and its id, which therefore is never given to another thread.
///
/// @return true once it has stopped or had ended before; false when it did not stop within two seconds, which a
///         thread that blocks signals or that hangs inside the system can cause. It stops as soon as it can.
bool TerminateThread(HANDLE thread, unsigned int exitCode);

/// Sets the priority: -2 lowest, -1, 0 normal, 1, 2 highest, each step being 5 of the system's nice value, counted
/// from the one of the process.
/// @return false with error 5 where the user may not raise priorities, which is usual.
bool SetThreadPriority(HANDLE thread, int priority);

/// Waits until the thread has ended, at most for so many milliseconds; false when the time ran out.
/// A body's last line has run when this answers; the system may still be putting its stack away.
bool WaitForThread(HANDLE thread, unsigned int timeOutMs);

/// The exit code of a thread that has ended, StillActive before.
unsigned int GetExitCodeThread(HANDLE thread);

/// A second handle of the same thread, to be closed on its own; null for null.
HANDLE DuplicateThread(HANDLE thread);

/// A handle of the calling thread, whoever started it; to be closed.
HANDLE DuplicateCurrentThread();

/// A handle of a thread of this process by its id, whoever started it; null when there is no such thread.
HANDLE OpenThread(unsigned long long id);

/// Gives a handle back; false for null.
bool CloseThread(HANDLE thread);

/// The id of the calling thread: not 0, and unique among the threads alive.
unsigned long long GetCurrentThreadId();

/// Lets the calling thread sleep for at least so many milliseconds; 0 gives up the rest of its time slice.
void Sleep(unsigned int timeMs);

} // namespace platform
