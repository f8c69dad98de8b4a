// SPDX-License-Identifier: MIT
#include "zeltools/platform/threads.h"

#include "zeltools/platform/clock.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/linux/futex.h"
#include "zeltools/platform/linux/thread_record.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <new>
#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <unordered_map>

namespace platform {

namespace {

// Neither is ever destroyed: a detached thread may end while the process runs its exit handlers.
std::mutex& tableMutex = *new std::mutex;
auto& table = *new std::unordered_map<unsigned int, ThreadRecord*>; // by id; guarded by tableMutex

constinit thread_local ThreadRecord* currentRecord = nullptr;
constinit thread_local unsigned int currentId = 0; // asked of the system once for each thread

unsigned int KernelThreadId() {
    return static_cast<unsigned int>(::syscall(SYS_gettid));
}

bool IsAlive(unsigned int id) {
    return ::syscall(SYS_tgkill, ::getpid(), static_cast<int>(id), 0) == 0 || errno != ESRCH;
}

/// A foreign thread says nobody that it ends, so it is asked for.
bool HasEnded(ThreadRecord& record) {
    return record.ended.load(std::memory_order_acquire) != 0 || (!record.body && !IsAlive(record.id.load()));
}

/// Under the table's lock: enters a record, in place of one whose thread is gone.
void EnterRecord(ThreadRecord& record) {
    ThreadRecord*& entry = table[record.id.load()];
    if (entry) {
        entry->ended.store(1, std::memory_order_release);
        if (entry->references == 0) {
            delete entry;
        }
    }
    entry = &record;
}

/// Under the table's lock: takes a reference away, and the record with the last one. A foreign thread that was sent
/// a control signal keeps its record, since the handler may still be about to use it.
void ReleaseRecord(ThreadRecord& record) {
    if (--record.references > 0) {
        return;
    }
    auto const found = table.find(record.id.load());
    bool const entered = found != table.end() && found->second == &record;
    if (entered && record.signalled) {
        return;
    }
    if (entered) {
        table.erase(found);
    }
    delete &record;
}

void* RunThread(void* argument) noexcept {
    ThreadRecord& record = *static_cast<ThreadRecord*>(argument);
    currentRecord = &record;
    {
        ThreadTableLock lock;
        currentId = KernelThreadId();
        record.id.store(currentId, std::memory_order_release);
        EnterRecord(record);
    }
    FutexWakeAll(record.id);
    UnblockThreadSignals();
    ParkWhileAsked(record);

    unsigned int const exitCode = record.body(record.argument);

    // No signal may find a thread whose record is gone: they stay blocked from here on, and those that wait are lost.
    sigset_t all;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, nullptr);
    ThreadTableLock lock;
    table.erase(record.id.load());
    record.exitCode.store(exitCode, std::memory_order_relaxed);
    record.ended.store(1, std::memory_order_release);
    FutexWakeAll(record.ended);
    FutexWakeAll(record.control);
    currentRecord = nullptr;
    ReleaseRecord(record);
    return nullptr;
}

/// Starts a detached thread; the error's number, or 0.
int StartDetached(std::size_t stackSize, ThreadRecord& record) {
    // What the C library needs at least depends on the thread-local data of all loaded libraries, and it does not
    // tell; a size that it refuses is doubled up to one that it always takes.
    constexpr std::size_t enoughStack = 1024 * 1024;
    pthread_attr_t attributes;
    if (int const error = ::pthread_attr_init(&attributes)) {
        return error;
    }
    ::pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    int error = 0;
    if (stackSize != 0) {
        std::size_t const page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
        std::size_t const smallest = static_cast<std::size_t>(PTHREAD_STACK_MIN);
        stackSize = std::max(std::min(stackSize, ~std::size_t{0} - page), smallest);
        stackSize = (stackSize + page - 1) / page * page;
        error = ::pthread_attr_setstacksize(&attributes, stackSize);
    }
    pthread_t ignored;
    if (error == 0) {
        error = ::pthread_create(&ignored, &attributes, &RunThread, &record);
    }
    while (error == EINVAL && stackSize != 0 && stackSize < enoughStack) {
        stackSize *= 2;
        ::pthread_attr_setstacksize(&attributes, stackSize);
        error = ::pthread_create(&ignored, &attributes, &RunThread, &record);
    }
    ::pthread_attr_destroy(&attributes);
    return error;
}

} // namespace

ThreadTableLock::ThreadTableLock() {
    sigset_t all;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &mask);
    tableMutex.lock();
}

ThreadTableLock::~ThreadTableLock() {
    tableMutex.unlock();
    ::pthread_sigmask(SIG_SETMASK, &mask, nullptr);
}

ThreadRecord* RecordOf(HANDLE thread) {
    if (!thread) {
        SetLastError(ErrorInvalidHandle);
    }
    return static_cast<ThreadRecord*>(thread);
}

HANDLE BeginThreadEx(std::size_t stackSize, ThreadBody body, void* argument, unsigned int flags,
                     unsigned long long* id) {
    auto* const record = new (std::nothrow) ThreadRecord;
    if (!record) {
        SetLastError(ErrorNotEnoughMemory);
        return nullptr;
    }
    record->body = body;
    record->argument = argument;
    record->references = 2; // the handle's, and the thread's own
    record->control.store((flags & CreateSuspended) ? 1 : 0);
    if (int const error = StartDetached(stackSize, *record)) {
        SetLastError(error == EAGAIN ? ErrorNotEnoughMemory : ErrorFromErrno(error));
        delete record;
        return nullptr;
    }
    while (record->id.load(std::memory_order_acquire) == 0) {
        FutexWait(record->id, 0);
    }
    if (id) {
        *id = record->id.load();
    }
    return record;
}

bool SetThreadPriority(HANDLE thread, int priority) {
    ThreadRecord* const record = RecordOf(thread);
    if (!record) {
        return false;
    }
    if (priority < -2 || priority > 2) {
        SetLastError(ErrorInvalidParameter);
        return false;
    }
    errno = 0;
    int const base = ::getpriority(PRIO_PROCESS, static_cast<id_t>(::getpid()));
    if (base == -1 && errno != 0) {
        SetLastError(ErrorFromErrno(errno));
        return false;
    }
    // The id of an ended thread may be another's by now.
    ThreadTableLock lock;
    if (HasEnded(*record)) {
        SetLastError(ErrorInvalidHandle);
        return false;
    }
    int const nice = std::clamp(base - 5 * priority, -20, 19);
    if (::setpriority(PRIO_PROCESS, record->id.load(), nice) != 0) {
        SetLastError(ErrorFromErrno(errno));
        return false;
    }
    return true;
}

bool WaitForThread(HANDLE thread, unsigned int timeOutMs) {
    ThreadRecord* const record = RecordOf(thread);
    if (!record) {
        return false;
    }
    constexpr unsigned long long askEveryMs = 10; // a foreign thread wakes nobody when it ends
    unsigned long long const start = GetTickCount64();
    while (!HasEnded(*record)) {
        unsigned long long const gone = GetTickCount64() - start;
        if (timeOutMs != WaitForever && gone >= timeOutMs) {
            return false;
        }
        unsigned long long waitMs = timeOutMs == WaitForever ? 60'000 : timeOutMs - gone;
        if (!record->body) {
            waitMs = std::min(waitMs, askEveryMs);
        }
        timespec const limit{static_cast<time_t>(waitMs / 1000), static_cast<long>(waitMs % 1000 * 1'000'000)};
        FutexWait(record->ended, 0, &limit);
    }
    return true;
}

unsigned int GetExitCodeThread(HANDLE thread) {
    ThreadRecord* const record = RecordOf(thread);
    return record && record->ended.load(std::memory_order_acquire) ? record->exitCode.load() : StillActive;
}

HANDLE DuplicateThread(HANDLE thread) {
    ThreadRecord* const record = RecordOf(thread);
    if (record) {
        ThreadTableLock lock;
        ++record->references;
    }
    return record;
}

HANDLE DuplicateCurrentThread() {
    return currentRecord ? DuplicateThread(currentRecord) : OpenThread(GetCurrentThreadId());
}

HANDLE OpenThread(unsigned long long id) {
    ThreadTableLock lock;
    if (id == 0 || id > 0x7FFFFFFF || !IsAlive(static_cast<unsigned int>(id))) {
        SetLastError(ErrorInvalidParameter);
        return nullptr;
    }
    unsigned int const threadId = static_cast<unsigned int>(id);
    if (auto const found = table.find(threadId); found != table.end()) {
        ThreadRecord& record = *found->second;
        if (record.references++ == 0 && !(record.control.load() & (ThreadRecord::Parked | ThreadRecord::Terminate))) {
            record.control.store(0); // what was asked of the former thread of this id
        }
        return &record;
    }
    auto* const record = new (std::nothrow) ThreadRecord;
    if (!record) {
        SetLastError(ErrorNotEnoughMemory);
        return nullptr;
    }
    record->id.store(threadId);
    EnterRecord(*record);
    return record;
}

bool CloseThread(HANDLE thread) {
    ThreadRecord* const record = RecordOf(thread);
    if (!record) {
        return false;
    }
    ThreadTableLock lock;
    ReleaseRecord(*record);
    return true;
}

unsigned long long GetCurrentThreadId() {
    if (currentId == 0) {
        currentId = KernelThreadId();
    }
    return currentId;
}

void Sleep(unsigned int timeMs) {
    if (timeMs == 0) {
        ::sched_yield();
        return;
    }
    timespec until;
    ::clock_gettime(CLOCK_MONOTONIC, &until);
    until.tv_sec += static_cast<time_t>(timeMs / 1000);
    until.tv_nsec += static_cast<long>(timeMs % 1000) * 1'000'000;
    if (until.tv_nsec >= 1'000'000'000) {
        until.tv_nsec -= 1'000'000'000;
        ++until.tv_sec;
    }
    while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) == EINTR) {
    }
}

} // namespace platform
