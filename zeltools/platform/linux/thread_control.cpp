// SPDX-License-Identifier: MIT
// Suspension, hard end and cancelled calls: what one thread does to another by a signal.

#include "zeltools/platform/blocking_calls.h"
#include "zeltools/platform/clock.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/linux/futex.h"
#include "zeltools/platform/linux/real_time_signal.h"
#include "zeltools/platform/linux/thread_record.h"

#include <cerrno>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

namespace platform {

namespace {

/// How long a signal may take to reach its thread before the caller is told that it did not.
constexpr unsigned long long answerLimitMs = 2000;

// Read and written by a signal handler, where the ordinary access to thread-local data of a shared library could
// allocate; this model places them beside the thread's own block.
[[gnu::tls_model("initial-exec")]] constinit thread_local int volatile cancellableDepth = 0;
[[gnu::tls_model("initial-exec")]] constinit thread_local bool volatile callCancelled = false;

void OnControlSignal(int, siginfo_t* information, void*) {
    if (information->si_code != SI_QUEUE || information->si_pid != ::getpid()) {
        return; // somebody else's use of the number
    }
    int const savedErrno = errno;
    ParkWhileAsked(*static_cast<ThreadRecord*>(information->si_value.sival_ptr));
    errno = savedErrno;
}

void OnCancelSignal(int, siginfo_t*, void*) {
    if (cancellableDepth > 0) {
        callCancelled = true;
    }
}

[[noreturn]] void StandForEver(ThreadRecord& record) {
    sigset_t all;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, nullptr);
    record.ended.store(1, std::memory_order_release);
    FutexWakeAll(record.ended);
    FutexWakeAll(record.control);
    for (;;) {
        FutexWait(record.ended, 1);
    }
}

/// Sends a signal to the thread, with the record for its handler. The caller holds the table's lock.
bool SendThreadSignal(ThreadRecord& record, int signal) {
    siginfo_t information{};
    information.si_signo = signal;
    information.si_code = SI_QUEUE;
    information.si_pid = ::getpid();
    information.si_uid = ::getuid();
    information.si_value.sival_ptr = &record;
    if (signal != 0 &&
        ::syscall(SYS_rt_tgsigqueueinfo, ::getpid(), static_cast<int>(record.id.load()), signal, &information) == 0) {
        return true;
    }
    SetLastError(signal == 0 ? ErrorNotSupported : ErrorFromErrno(errno));
    return false;
}

/// Waits until the thread stands or has ended; false when it did neither in time.
bool WaitUntilStopped(ThreadRecord& record) {
    constexpr timespec lookAgain{0, 10'000'000};
    for (unsigned long long const start = GetTickCount64();;) {
        if (record.ended.load(std::memory_order_acquire)) {
            return true;
        }
        unsigned int const control = record.control.load(std::memory_order_acquire);
        if ((control & ThreadRecord::Parked) && !(control & ThreadRecord::Terminate)) {
            return true;
        }
        if (GetTickCount64() - start >= answerLimitMs) {
            return false;
        }
        FutexWait(record.control, control, &lookAgain);
    }
}

} // namespace

void ParkWhileAsked(ThreadRecord& record) {
    unsigned int control = record.control.load(std::memory_order_acquire);
    for (;;) {
        if (control & ThreadRecord::Terminate) {
            StandForEver(record);
        }
        if ((control & ThreadRecord::CountMask) == 0) {
            if (record.control.compare_exchange_weak(control, 0, std::memory_order_acq_rel)) {
                return;
            }
        } else if (!(control & ThreadRecord::Parked)) {
            if (record.control.compare_exchange_weak(control, control | ThreadRecord::Parked,
                                                     std::memory_order_acq_rel)) {
                FutexWakeAll(record.control);
            }
        } else {
            FutexWait(record.control, control);
            control = record.control.load(std::memory_order_acquire);
        }
    }
}

int ControlSignal() {
    static int const signal = InstallRealTimeSignal(&OnControlSignal, SA_RESTART);
    return signal;
}

int CancelSignal() {
    static int const signal = InstallRealTimeSignal(&OnCancelSignal, 0);
    return signal;
}

void UnblockThreadSignals() {
    sigset_t ours;
    ::sigemptyset(&ours);
    ::sigaddset(&ours, ControlSignal());
    ::sigaddset(&ours, CancelSignal());
    ::pthread_sigmask(SIG_UNBLOCK, &ours, nullptr);
}

unsigned int SuspendThread(HANDLE thread) {
    ThreadRecord* const record = RecordOf(thread);
    if (!record) {
        return SuspendFailed;
    }
    bool const isCaller = record->id.load() == GetCurrentThreadId();
    unsigned int before = 0;
    {
        ThreadTableLock lock;
        if (record->ended.load()) {
            SetLastError(ErrorInvalidHandle);
            return SuspendFailed;
        }
        before = record->control.fetch_add(1) & ThreadRecord::CountMask;
        if (!isCaller && before == 0 && !SendThreadSignal(*record, ControlSignal())) {
            record->control.fetch_sub(1);
            return SuspendFailed;
        }
        record->signalled = true;
    }
    if (isCaller) {
        ParkWhileAsked(*record);
        return before;
    }
    if (WaitUntilStopped(*record) && !record->ended.load()) {
        return before;
    }
    record->control.fetch_sub(1);
    FutexWakeAll(record->control);
    SetLastError(ErrorAccessDenied);
    return SuspendFailed;
}

unsigned int ResumeThread(HANDLE thread) {
    ThreadRecord* const record = RecordOf(thread);
    if (!record || record->ended.load()) {
        SetLastError(ErrorInvalidHandle);
        return SuspendFailed;
    }
    unsigned int control = record->control.load();
    do {
        if ((control & ThreadRecord::CountMask) == 0) {
            return 0;
        }
    } while (!record->control.compare_exchange_weak(control, control - 1, std::memory_order_acq_rel));
    FutexWakeAll(record->control);
    return control & ThreadRecord::CountMask;
}

bool TerminateThread(HANDLE thread, unsigned int exitCode) {
    ThreadRecord* const record = RecordOf(thread);
    if (!record) {
        return false;
    }
    bool const isCaller = record->id.load() == GetCurrentThreadId();
    {
        ThreadTableLock lock;
        if (record->ended.load()) {
            return true;
        }
        record->exitCode.store(exitCode);
        unsigned int const before = record->control.fetch_or(ThreadRecord::Terminate);
        FutexWakeAll(record->control);
        if (!isCaller && !(before & ThreadRecord::Parked)) {
            SendThreadSignal(*record, ControlSignal());
        }
        record->signalled = true;
    }
    if (isCaller) {
        ParkWhileAsked(*record);
    }
    if (!WaitUntilStopped(*record)) {
        SetLastError(ErrorAccessDenied);
        return false;
    }
    return true;
}

bool CancelSynchronousIo(HANDLE thread) {
    ThreadRecord* const record = RecordOf(thread);
    if (!record) {
        return false;
    }
    ThreadTableLock lock;
    if (record->ended.load()) {
        SetLastError(ErrorInvalidHandle);
        return false;
    }
    return SendThreadSignal(*record, CancelSignal());
}

void BeginCancellableCalls() {
    if (cancellableDepth == 0) {
        callCancelled = false;
    }
    cancellableDepth = cancellableDepth + 1;
}

void EndCancellableCalls() {
    cancellableDepth = cancellableDepth - 1;
}

bool IsCallCancelled() {
    return cancellableDepth > 0 && callCancelled;
}

} // namespace platform
