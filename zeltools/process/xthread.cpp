// SPDX-License-Identifier: MIT
#include "zeltools/process/xthread.h"

#include "zeltools/foundation/thread_exceptions.h"
#include "zeltools/platform/threads.h"
#include "zeltools/process/thread_registry.h"
#include "zeltools/process/xsingle_lock.h"

#include <new>

ZEL_IMPLEMENT_RUNTIME_CLASS(CXThread, CXObject, RuntimeClassNotSerializable)

namespace {

/// A handle of one's own, for as long as a call on it lasts: the object that it was taken from may delete itself
/// meanwhile, and closes its handle then.
class OwnHandle {
public:
    explicit OwnHandle(void* thread) : handle(thread ? platform::DuplicateThread(thread) : nullptr) {}
    ~OwnHandle() {
        if (handle) {
            platform::CloseThread(handle);
        }
    }
    OwnHandle(OwnHandle const&) = delete;
    OwnHandle& operator=(OwnHandle const&) = delete;

    operator void*() const { return handle; }

private:
    void* handle;
};

bool IsPriority(xThreadPriority priority) {
    return priority >= xThreadPriorityLowest && priority <= xThreadPriorityHighest;
}

int SystemPriority(xThreadPriority priority) {
    return priority - xThreadPriorityNormal;
}

} // namespace

CXThread::CXThread(bool keep)
    : threadLock(std::make_unique<CXCriticalSection>()), threadFlags(keep ? 0U : ThreadAutoDelete) {}

CXThread::CXThread(bool (*function)(void*), void* data)
    : threadFunction(function), userData(data), threadLock(std::make_unique<CXCriticalSection>()) {}

CXThread::~CXThread() {
    ForgetThread();
    if (void* const handle = GetThreadHandle()) {
        platform::CloseThread(handle);
    }
}

void CXThread::ForgetThread() {
    // Id 0 is a thread that never started; the registry would take it for the caller.
    if (unsigned long long const id = threadId.exchange(0)) {
        SetSilentThread(false, id);
        SetCancelThread(false, id);
    }
}

CXThread* CXThread::BeginThread(CXThread* thread, xThreadPriority priority, unsigned int flags,
                                unsigned long long stackSize) {
    return thread && thread->Begin(priority, flags, stackSize) ? thread : nullptr;
}

CXThread* CXThread::BeginThread(bool (*function)(void*), void* userData, xThreadPriority priority, unsigned int flags,
                                unsigned long long stackSize) {
    if (!function) {
        return nullptr;
    }
    return BeginNewThread(std::make_unique<CXThread>(function, userData), priority, flags, stackSize);
}

CXThread* CXThread::BeginThread(CXRuntimeClass const* threadClass, void* userData, xThreadPriority priority,
                                unsigned int flags, unsigned long long stackSize) {
    if (!threadClass || !threadClass->IsDerivedFrom(GetThisRuntimeClassDescriptor())) {
        return nullptr;
    }
    std::unique_ptr<CXThread> thread(static_cast<CXThread*>(threadClass->CreateObject()));
    if (!thread) {
        return nullptr;
    }
    thread->userData = userData;
    return BeginNewThread(std::move(thread), priority, flags, stackSize);
}

CXThread* CXThread::BeginNewThread(std::unique_ptr<CXThread> thread, xThreadPriority priority, unsigned int flags,
                                   unsigned long long stackSize) {
    if (!thread->Begin(priority, flags, stackSize)) {
        return nullptr;
    }
    return thread.release(); // from here on it may be deleting itself
}

bool CXThread::Begin(xThreadPriority startPriority, unsigned int flags, unsigned long long stackSize) {
    if (GetThreadHandle()) {
        return false;
    }
    SetAutoDelete((flags & BeginThreadAutoDelete) != 0);
    priority.store(xThreadPriorityNone, std::memory_order_relaxed);
    threadId.store(0, std::memory_order_relaxed);
    threadState.store(flags | StateRunning);

    unsigned long long id = 0;
    void* const handle =
        platform::BeginThreadEx(stackSize, &StaticThreadCallback, this, platform::CreateSuspended, &id);
    if (!handle) {
        threadState.store(0);
        return false;
    }
    OwnHandle const started(handle);
    if (IsPriority(startPriority) && platform::SetThreadPriority(handle, SystemPriority(startPriority))) {
        priority.store(startPriority, std::memory_order_relaxed);
    }
    threadId.store(id, std::memory_order_release);
    threadHandle.store(handle, std::memory_order_release);
    // Whoever sees the handle may resume the thread, and a body that ends may take the object with it: nothing below
    // touches the object.
    if (!(flags & BeginThreadSuspended)) {
        platform::ResumeThread(started);
    }
    return true;
}

unsigned int CXThread::StaticThreadCallback(void* argument) {
    CXThread* const thread = static_cast<CXThread*>(argument);
    bool result = false;
    if (thread->threadFunction) {
        result = thread->threadFunction(thread->userData);
    } else {
        if (thread->Start()) {
            result = thread->Run();
        }
        thread->Finish();
    }
    XDeleteThreadException();

    bool deletesItself = false;
    {
        CXSingleLock const hold(thread->threadLock.get(), true);
        thread->threadState.fetch_and(~StateRunning);
        deletesItself = thread->AutoDelete();
    }
    // The flag is the very last touch, outside the lock: an owner who sees it deletes the object, lock and all.
    thread->threadFlags.fetch_or(ThreadTerminated, std::memory_order_acq_rel);
    if (deletesItself) {
        delete thread;
    }
    return result ? 1 : 0;
}

void CXThread::SetFlag(unsigned int flag, bool on) {
    CXSingleLock const hold(threadLock.get(), true);
    if (on) {
        threadFlags.fetch_or(flag, std::memory_order_acq_rel);
    } else {
        threadFlags.fetch_and(~flag, std::memory_order_acq_rel);
    }
}

void CXThread::Lock(bool lock) {
    if (lock) {
        threadLock->Lock();
    } else {
        threadLock->Unlock();
    }
}

bool CXThread::SetThreadPriority(xThreadPriority newPriority) {
    if (!IsPriority(newPriority) || !platform::SetThreadPriority(GetThreadHandle(), SystemPriority(newPriority))) {
        return false;
    }
    priority.store(newPriority, std::memory_order_relaxed);
    return true;
}

bool CXThread::ResumeThread() {
    OwnHandle const handle(GetThreadHandle());
    if (!handle) {
        return false;
    }
    // Cleared before, since the body may end at once and delete the object. The system refuses only when the body has
    // ended, and then the caller vouches for the object.
    unsigned int const before = threadState.fetch_and(~StateSuspended);
    if (platform::ResumeThread(handle) == platform::SuspendFailed) {
        threadState.fetch_or(before & StateSuspended);
        return false;
    }
    return true;
}

bool CXThread::SuspendThread() {
    void* const handle = GetThreadHandle();
    if (!handle) {
        return false;
    }
    // Set before, since a thread that suspends itself comes back only when it is resumed.
    unsigned int const before = threadState.fetch_or(StateSuspended);
    if (platform::SuspendThread(handle) == platform::SuspendFailed) {
        threadState.fetch_and(before | ~StateSuspended);
        return false;
    }
    return true;
}

bool CXThread::Start() {
    return true;
}

void CXThread::Finish() {}

bool CXThread::Run() {
    return false;
}

unsigned long long CXThread::GetMainThreadID() {
    return GetApplicationMainThreadID();
}

unsigned long long CXThread::GetCurrentThreadID() {
    return platform::GetCurrentThreadId();
}

void CXThread::SleepCurrentThread(unsigned int timeMs) {
    platform::Sleep(timeMs);
}

void xThreadSleepCurrentThread(unsigned int timeMs) {
    platform::Sleep(timeMs);
}
