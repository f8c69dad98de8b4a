// SPDX-License-Identifier: MIT
#include "zeltools/process/custom_thread.h"

#include "zeltools/foundation/hash_table.h"
#include "zeltools/platform/threads.h"
#include "zeltools/process/application_lock_private.h"
#include "zeltools/process/application_state_private.h"
#include "zeltools/process/thread_registry.h"
#include "zeltools/process/xsingle_lock.h"

ZEL_IMPLEMENT_RUNTIME_CLASS(CCustomThread, CXThread, RuntimeClassNotSerializable)

namespace {

constexpr unsigned int pollMs = 10;
constexpr unsigned int pauseAfterKillMs = 100;

/// The objects alive. AskForThreadsEnd and HardThreadsTermination take ApplicationLock inside the lock.
struct Registry {
    CXCriticalSection lock;
    CHashTable<CCustomThread*> threads;   // guarded by lock
    CHashTable<CCustomThread*> condemned; // taken out of threads, still to be killed; guarded by lock
    unsigned int leaving = 0;             // taken out of threads, still clearing their flags; guarded by lock
};

Registry& TheRegistry() {
    // Never destroyed: a thread that the process outruns at its exit may still delete itself.
    static Registry& registry = *new Registry;
    return registry;
}

void Register(CCustomThread* thread) {
    CXSingleLock const hold(&TheRegistry().lock, true);
    TheRegistry().threads.Insert(thread);
}

enum class KillResult {
    HadEnded,
    Killed,
    StillRuns
};

/// Stops a thread for good. One that hangs inside the system, or that blocks signals, does not stop in time.
KillResult Kill(void* handle) {
    if (platform::WaitForThread(handle, 0)) {
        return KillResult::HadEnded;
    }
    return platform::TerminateThread(handle, 1) ? KillResult::Killed : KillResult::StillRuns;
}

} // namespace

CCustomThread::CCustomThread(bool keep) : CXThread(keep) {
    Register(this);
}

CCustomThread::CCustomThread(bool (*function)(void*), void* data) : CXThread(function, data) {
    Register(this);
}

CCustomThread::~CCustomThread() {
    // Out of the table first, so that AskForThreadsEnd does not mark the id again; counted until it is unmarked, so
    // that the close does not delete the tables before. The flags take the application lock, which an exit callback
    // that deletes a thread holds already: so they are cleared between the two steps and not inside them.
    Registry& registry = TheRegistry();
    unsigned int counted = 0;
    {
        CXSingleLock const hold(&registry.lock, true);
        counted = registry.threads.Remove(this) ? 1 : 0; // a killed thread was taken out before
        registry.leaving += counted;
        registry.condemned.Remove(this);
    }
    ForgetThread();
    CXSingleLock const hold(&registry.lock, true);
    registry.leaving -= counted;
}

unsigned int CCustomThread::GetRunningThreadCount() {
    Registry& registry = TheRegistry();
    CXSingleLock const hold(&registry.lock, true);
    return registry.threads.GetCount() + registry.leaving;
}

bool CCustomThread::ThreadsMustTerminate() {
    return ApplicationCloseStarted.load(std::memory_order_acquire);
}

void CCustomThread::AskForThreadsEnd(bool resume) {
    ApplicationCloseStarted.store(true, std::memory_order_release);
    Registry& registry = TheRegistry();
    CXSingleLock const hold(&registry.lock, true);
    for (unsigned int position = registry.threads.GetFirst(); position != 0xFFFFFFFF;) {
        CCustomThread* thread = nullptr;
        registry.threads.GetNext(position, thread);
        if (unsigned long long const id = thread->GetThreadID()) { // 0, not started yet, would be the caller
            SetCancelThread(true, id);
        }
        thread->StopThread();
        if (resume) {
            thread->ResumeThread();
        }
    }
}

void CCustomThread::WaitEndOfThreads(bool stayClosed) {
    if (ThreadsMustTerminate()) {
        return;
    }
    AskForThreadsEnd(true);
    while (GetRunningThreadCount() != 0) {
        platform::Sleep(pollMs);
    }
    if (!stayClosed) {
        ApplicationCloseStarted.store(false, std::memory_order_release);
    }
}

bool CCustomThread::HardThreadsTermination(bool onlyKillable) {
    Registry& registry = TheRegistry();
    CXArray<CCustomThread*> collected;
    {
        CXSingleLock const hold(&registry.lock, true);
        for (unsigned int position = registry.threads.GetFirst(); position != 0xFFFFFFFF;) {
            CCustomThread* thread = nullptr;
            registry.threads.GetNext(position, thread);
            if (thread->GetThreadID() != GetCurrentThreadID() && (!onlyKillable || thread->IsFlagSet(ThreadKillable))) {
                collected.Add(thread);
            }
        }
        for (CCustomThread* const thread : collected) {
            registry.threads.Remove(thread);
            registry.condemned.Insert(thread);
        }
    }

    bool anyKilled = false;
    for (CCustomThread* const thread : collected) {
        {
            // With both locks in hand no thread is stopped inside them, and none deletes the object. All that needs
            // memory is done before the thread stands still, since it may hold the allocator's lock then.
            CXSingleLock const hold(&registry.lock, true);
            CXSingleLock const holdApplication(&ApplicationLock(), true);
            if (!registry.condemned.IsFound(thread)) {
                continue; // it has ended and deleted itself meanwhile
            }
            registry.condemned.Remove(thread);
            CXArray<unsigned long long> children;
            CXArray<void*> childHandles;
            if (unsigned long long const id = thread->GetThreadID()) {
                GetChildThreads(id, children);
            }
            for (unsigned long long const child : children) {
                childHandles.Add(child == GetCurrentThreadID() ? nullptr : platform::OpenThread(child));
            }

            KillResult result = KillResult::HadEnded;
            if (void* const handle = thread->GetThreadHandle()) {
                thread->threadState.fetch_or(StateSuspended);
                result = Kill(handle);
            }
            anyKilled |= result == KillResult::Killed;
            if (result != KillResult::StillRuns) { // else its owner would delete the object under it
                thread->threadFlags.fetch_or(ThreadTerminated);
            }
            for (int index = 0; index < children.GetSize(); ++index) {
                if (childHandles[index]) {
                    anyKilled |= Kill(childHandles[index]) == KillResult::Killed;
                    platform::CloseThread(childHandles[index]);
                }
                DetachThread(children[index]);
            }
        }
        platform::Sleep(pauseAfterKillMs);
    }
    return anyKilled;
}
