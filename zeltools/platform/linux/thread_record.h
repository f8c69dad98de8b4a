// SPDX-License-Identifier: MIT
// What a thread handle points to, and the table of the threads that are known.
//
// A thread that BeginThreadEx starts has a record from before its first line to after its last, which it counts a
// reference to itself. A thread that somebody else started gets one when a handle is asked for.

#pragma once

#include "zeltools/platform/threads.h"

#include <atomic>
#include <csignal>
#include <mutex>

namespace platform {

/// One thread. A handle is a pointer to it and counts as one reference.
struct ThreadRecord {
    /// The word that suspends and ends a thread: the suspend count, and these two bits. A thread leaves its parking
    /// place by a compare-and-swap to 0, so a suspension that comes at that moment is either seen or answered anew.
    static constexpr unsigned int Parked = 0x40000000;    // set by the thread while it stands
    static constexpr unsigned int Terminate = 0x80000000; // set by whoever ends it
    static constexpr unsigned int CountMask = 0x3FFFFFFF;

    std::atomic<unsigned int> control{0};
    std::atomic<unsigned int> id{0};    // 0 until the thread runs; a futex of the one who starts it
    std::atomic<unsigned int> ended{0}; // 1 once the body has returned or the thread is parked for ever; a futex
    std::atomic<unsigned int> exitCode{StillActive};
    ThreadBody body = nullptr; // null for a thread that somebody else started
    void* argument = nullptr;
    int references = 1;     // guarded by the table's lock
    bool signalled = false; // guarded by the table's lock; a control signal may be on its way to a foreign thread
};

/// Holds the lock of the table. All signals are blocked meanwhile, so that no thread is suspended or ended while it
/// is inside and whoever did it can still use the table.
///
/// A thread of ours leaves the table before it ends, under this lock; so a signal that is sent under it, to a record
/// that has not ended, reaches the right thread.
class [[nodiscard]] ThreadTableLock {
public:
    ThreadTableLock();
    ~ThreadTableLock();
    ThreadTableLock(ThreadTableLock const&) = delete;
    ThreadTableLock& operator=(ThreadTableLock const&) = delete;

private:
    sigset_t mask; // what the calling thread blocked before
};

/// Stands still while the record asks for it; called on the thread itself, with the handler's rules. Does not
/// return when the thread is to end.
void ParkWhileAsked(ThreadRecord& record);

/// The signals of ParkWhileAsked and of CancelSynchronousIo; 0 when the system had none to give.
int ControlSignal();
int CancelSignal();

/// Lets the calling thread receive both.
void UnblockThreadSignals();

/// The record behind a handle; null, with error 6, for null.
ThreadRecord* RecordOf(HANDLE thread);

} // namespace platform
