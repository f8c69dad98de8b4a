// SPDX-License-Identifier: MIT
// A thread as an object: a subclass that overrides Run, or a plain function. CCustomThread is the one to use for work
// that the close of the library has to wait for.
//
//     class CLoader : public CXThread {
//     public:
//         CLoader() : CXThread(true) {}
//     protected:
//         bool Run() override { ... }
//     };
//     CLoader loader;
//     CXThread::BeginThread(&loader, xThreadPriorityNormal, 0, 0);
//     while (!loader.IsTerminated()) { ... }
//
// Two kinds of life. A kept object is its owner's, who deletes it once IsTerminated says true. A self-deleting one is
// gone as soon as its body ends, which can be before BeginThread has even returned: its owner must not touch it again,
// unless it was started suspended.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xobject.h"
#include "zeltools/process/xcritical_section.h"

#include <atomic>
#include <memory>

/// Priorities, each one step of the system's.
enum xThreadPriority : int {
    xThreadPriorityNone = 0, ///< none could be set
    xThreadPriorityLowest = 1,
    xThreadPriorityBelowNormal = 2,
    xThreadPriorityNormal = 3,
    xThreadPriorityAboveNormal = 4, ///< usually refused to ordinary users, as all above normal are
    xThreadPriorityHighest = 5,
};

/// Bits of CXThread's flags.
enum ThreadFlags : unsigned int {
    ThreadAutoDelete = 0x1, ///< the object deletes itself when its body ends
    ThreadCancel = 0x2,     ///< SetCancel was called
    ThreadTerminated = 0x8, ///< the body has ended, or the thread was killed
    ThreadKillable = 0x10,  ///< CCustomThread::HardThreadsTermination(true) may kill the thread
};

/// Flags of BeginThread.
enum BeginThreadFlags : unsigned int {
    BeginThreadSuspended = 0x1,  ///< the body does not run before ResumeThread
    BeginThreadAutoDelete = 0x2, ///< set: the object deletes itself; clear: it is kept, whatever its constructor said
};

/// A thread. No exception may leave the body: it ends the process. One that the body has caught and left recorded for
/// its thread is deleted at the end.
/// Threads: the questions, SetFlag, SetCancel, ResumeThread and SuspendThread from any; the rest from the owner.
class ZEL_API CXThread : public CXObject {
    ZEL_DECLARE_RUNTIME_CLASS(CXThread)

public:
    // Making and starting one

    /// @param keep  False for an object that deletes itself when its body ends.
    explicit CXThread(bool keep = false);

    /// The function form: `function` is the body. The object is kept until SetAutoDelete says otherwise.
    CXThread(bool (*function)(void*), void* userData);

    /// Clears the thread's silent and cancel flags. The thread itself must have ended, or never started.
    ~CXThread() override;
    CXThread(CXThread const&) = delete;
    CXThread& operator=(CXThread const&) = delete;

    /// Starts the thread of an object, once in its life.
    ///
    /// @param flags      BeginThreadFlags.
    /// @param stackSize  Bytes; 0 takes the system's default. Below the system's minimum it is raised to that.
    /// @return the object; null on failure, which leaves the object to the caller and sets no exception. A
    ///         self-deleting object that was not started suspended may be gone: the pointer then only tells success.
    static CXThread* BeginThread(CXThread* thread, xThreadPriority priority = xThreadPriorityNormal,
                                 unsigned int flags = 0, unsigned long long stackSize = 0);

    /// Starts a new CXThread with this function as its body. Kept objects are the caller's to delete; null on failure.
    static CXThread* BeginThread(bool (*function)(void*), void* userData,
                                 xThreadPriority priority = xThreadPriorityNormal, unsigned int flags = 0,
                                 unsigned long long stackSize = 0);

    /// Starts a new object of a class that derives from CXThread, with `userData` for GetUserThreadData. Kept objects
    /// are the caller's to delete; null on failure, or if the class is none of these or cannot be created.
    static CXThread* BeginThread(CXRuntimeClass const* threadClass, void* userData,
                                 xThreadPriority priority = xThreadPriorityNormal, unsigned int flags = 0,
                                 unsigned long long stackSize = 0);

    // Asking

    /// What the constructor or BeginThread was given for the body.
    void* GetUserThreadData() const { return userData; }

    /// Whether the thread was started.
    bool IsValidThread() const { return GetThreadHandle() != nullptr; }

    bool IsSuspended() const { return (threadState.load(std::memory_order_acquire) & StateSuspended) != 0; }

    /// Whether the body has ended or was killed. The thread does not touch the object any more, so its owner may
    /// delete it.
    bool IsTerminated() const { return IsFlagSet(ThreadTerminated); }

    /// The system's handle; null before the start. It stays the object's.
    void* GetThreadHandle() const { return threadHandle.load(std::memory_order_acquire); }

    /// The thread's id; 0 before the start.
    unsigned long long GetThreadID() const { return threadId.load(std::memory_order_acquire); }

    /// The priority that was set; xThreadPriorityNone before the start and where the system refused it.
    xThreadPriority GetThreadPriority() const { return priority.load(std::memory_order_relaxed); }

    bool AutoDelete() const { return IsFlagSet(ThreadAutoDelete); }
    bool IsFlagSet(unsigned int flag) const { return (threadFlags.load(std::memory_order_acquire) & flag) != 0; }

    /// Whether SetCancel was called. It does not ask the thread registry: ShouldCancelThread does.
    bool ShouldCancel() const { return IsFlagSet(ThreadCancel); }

    static unsigned long long GetMainThreadID();
    static unsigned long long GetCurrentThreadID();

    // Changing

    void SetAutoDelete(bool autoDelete) { SetFlag(ThreadAutoDelete, autoDelete); }
    void SetCancel(bool cancel = true) { SetFlag(ThreadCancel, cancel); }

    /// Sets or clears ThreadFlags.
    void SetFlag(unsigned int flag, bool on = true);

    /// Takes (true) or releases (false) the lock under which the flags change. Not to be held when the object goes.
    void Lock(bool lock);

    /// @return false before the start, for a value that is no priority, and where the system refuses; the priority
    ///         then stays.
    bool SetThreadPriority(xThreadPriority newPriority);

    /// Takes back one SuspendThread or the suspended start; false before the start and after the end.
    bool ResumeThread();

    /// Stops the thread where it stands, with the locks it holds, until ResumeThread; false before the start and after
    /// the end. For debugging and for the end of the process: a thread that is to pause should wait for something.
    bool SuspendThread();

    /// Lets the calling thread sleep for at least so many milliseconds.
    static void SleepCurrentThread(unsigned int timeMs);

    // What subclasses override; all three run on the new thread

protected:
    /// Prepares the run; false keeps Run from being called.
    virtual bool Start();

    /// Ends what Start began; called whatever Start and Run answered.
    virtual void Finish();

    /// Does the work. Its result becomes the exit code, 1 for true.
    virtual bool Run();

    /// Clears the thread's flags in the thread registry, once. For the destructor of a class whose objects are waited
    /// for, since whoever waits goes on to delete the registry's tables.
    void ForgetThread();

private:
    friend class CCustomThread;

    static constexpr unsigned int StateSuspended = 0x1;
    static constexpr unsigned int StateRunning = 0x100;

    static unsigned int StaticThreadCallback(void* thread);
    bool Begin(xThreadPriority startPriority, unsigned int flags, unsigned long long stackSize);
    static CXThread* BeginNewThread(std::unique_ptr<CXThread> thread, xThreadPriority priority, unsigned int flags,
                                    unsigned long long stackSize);

    bool (*threadFunction)(void*) = nullptr;
    void* userData = nullptr;
    std::atomic<void*> threadHandle{nullptr}; // stored last by the start: who sees it sees the rest
    std::atomic<unsigned int> threadState{0}; // StateSuspended, StateRunning and the start's flags
    std::atomic<xThreadPriority> priority{xThreadPriorityNone};
    std::atomic<unsigned long long> threadId{0};
    std::unique_ptr<CXCriticalSection> threadLock;
    std::atomic<unsigned int> threadFlags{0}; // changed under threadLock; ThreadTerminated is a kept thread's last act
};

/// Lets the calling thread sleep for at least so many milliseconds.
ZEL_API void xThreadSleepCurrentThread(unsigned int timeMs);
