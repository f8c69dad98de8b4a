// SPDX-License-Identifier: MIT
// The thread that the close of the library knows: each one alive can be told to stop, and is waited for.
//
//     class CLoader : public CCustomThread {
//     protected:
//         bool Run() override {
//             while (!MustTerminate()) {
//                 ...
//             }
//             return true;
//         }
//     };
//     auto loader = std::make_unique<CLoader>();
//     if (CXThread::BeginThread(loader.get(), xThreadPriorityNormal, BeginThreadAutoDelete)) {
//         loader.release();                                  // its own; a failed start leaves it here
//     }

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/process/xthread.h"

#include <atomic>

/// A thread that is registered from its construction to its destruction, whether it runs or not. An object that its
/// owner forgets keeps the library from closing; self-deleting ones take care of themselves.
/// Threads: as for CXThread; the static functions from any thread.
class ZEL_API CCustomThread : public CXThread {
    ZEL_DECLARE_RUNTIME_CLASS(CCustomThread)

public:
    /// As for CXThread; they also enter the object in the registry.
    explicit CCustomThread(bool keep = false);
    CCustomThread(bool (*function)(void*), void* userData);

    /// Clears the thread's flags; once the object is counted no more, the close may go on.
    ~CCustomThread() override;

    // One thread

    /// What a body asks in its loops: whether this thread, or all of them, were told to stop.
    bool MustTerminate() const { return stopRequested.load(std::memory_order_acquire) || ThreadsMustTerminate(); }

    /// Tells this thread to stop; there is no taking back.
    void StopThread() { stopRequested.store(true, std::memory_order_release); }

    // All threads

    /// How many objects are registered.
    static unsigned int GetRunningThreadCount();

    /// Whether all threads were told to stop.
    static bool ThreadsMustTerminate();

    /// Tells all threads to stop, those too that are made later.
    /// @param resume  Also resumes the suspended ones, which could not see it otherwise.
    static void AskForThreadsEnd(bool resume);

    /// Tells all threads to stop and waits, without limit, until none is registered. Does nothing if they were told
    /// before.
    /// @param stayClosed  False lets new threads run afterwards.
    static void WaitEndOfThreads(bool stayClosed);

    /// Kills threads that ignore the request, with the threads that were attached below them. The last resort at the
    /// end of the process: destructors do not run, the locks that a thread holds stay held (but for the registry's and
    /// the application lock, which are waited for), and the objects stay their owners'. The calling thread is spared.
    /// One that hangs inside the system may not stop within some seconds: it is given up, and not IsTerminated.
    /// @param onlyKillable  Takes only those that have ThreadKillable.
    /// @return whether any thread was killed.
    static bool HardThreadsTermination(bool onlyKillable);

    static unsigned long long GetCurrentThreadID() { return CXThread::GetCurrentThreadID(); }

    /// Names for threads are taken and not used.
    void SetThreadName(char const*) {}
    static void SetThreadName(unsigned long long, char const*) {}
    static void SetCurrentThreadName(char const*) {}

private:
    std::atomic<bool> stopRequested{false};
};
