// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/io_time_out.h"

#include "zeltools/files/paths/guarded_call_private.h"
#include "zeltools/platform/blocking_calls.h"
#include "zeltools/platform/clock.h"
#include "zeltools/platform/errors.h"
#include "zeltools/platform/shell_path.h"
#include "zeltools/platform/threads.h"
#include "zeltools/process/xcritical_section.h"
#include "zeltools/process/xthread.h"

#include <memory>
#include <string_view>

// A guarded call, from left to right in time:
//
//     guarded thread  |section taken ---- blocking call ------------------------ section left| waits for count 0
//     watcher           asks every millisecond ... |limit: interrupts again and again until left| count 0
//
// One interruption would not do: one that arrives just before the call blocks is lost. The watcher's last act is to
// lower the count, so the guard may stand on the guarded thread's stack.

namespace {

constexpr unsigned int pollMs = 1;

/// The body of the watcher; false when the limit was reached.
bool Watch(void* data) {
    IoTimeOutGuard& guard = *static_cast<IoTimeOutGuard*>(data);
    unsigned long long const start = platform::GetTickCount64();
    bool inTime = true;
    while (guard.section->IsLocked()) {
        if (inTime && platform::GetTickCount64() - start >= guard.timeOutMs) {
            inTime = false;
            *guard.timeOutWord = IoTimedOut;
        }
        if (!inTime) {
            platform::CancelSynchronousIo(guard.thread);
        }
        platform::Sleep(pollMs);
    }
    // The counter falls before the section is free: what follows must not run ahead of the one who leaves.
    guard.section->Lock();
    guard.section->Unlock();
    guard.runningCount.fetch_sub(1, std::memory_order_release);
    return inTime;
}

/// The record as fileTimeOut gives it out, with a word of its own.
struct OwnedGuard : IoTimeOutGuard {
    unsigned int word;
};

void* MakeGuard(CXTString<char16_t> const* path, unsigned int timeOut, bool forced) {
    auto owned = std::make_unique<OwnedGuard>();
    owned->word = timeOut == IoTimedOut ? 0 : timeOut; // no limit has run out yet
    owned->timeOutWord = &owned->word;
    if (detail::NeedsGuard(path, timeOut, forced)) {
        detail::BuildGuard(*owned, timeOut, &owned->word);
    }
    return static_cast<IoTimeOutGuard*>(owned.release());
}

} // namespace

bool fileTimeOut(IoTimeOut operation, void*& guard, CXTString<char16_t> const* path, unsigned int timeOut) {
    if (operation == IoTimeOutInit || operation == IoTimeOutInitForced) {
        guard = MakeGuard(path, timeOut, operation == IoTimeOutInitForced);
        return true;
    }
    if (!guard || operation > IoTimeOutFree) {
        return false;
    }
    IoTimeOutGuard& record = *static_cast<IoTimeOutGuard*>(guard);
    if (operation == IoTimeOutBegin) {
        detail::BeginGuard(record);
    } else if (operation == IoTimeOutEnd) {
        detail::EndGuard(record);
    } else {
        detail::FreeGuard(record);
        delete static_cast<OwnedGuard*>(&record);
        guard = nullptr;
    }
    return true;
}

namespace detail {

bool NeedsGuard(CXTString<char16_t> const* path, unsigned int timeOut, bool forced) {
    if (timeOut == 0 || timeOut == IoTimedOut) {
        return false;
    }
    return forced || (timeOut & IoTimeOutAnyPath) || (path && platform::PathIsUNCW(std::u16string_view(*path)));
}

void BuildGuard(IoTimeOutGuard& guard, unsigned int timeOut, unsigned int* timeOutWord) {
    guard.timeOutMs = timeOut & ~IoTimeOutAnyPath;
    guard.section = new CXCriticalSection;
    guard.timeOutWord = timeOutWord;
    guard.runningCount.store(0, std::memory_order_relaxed);
    guard.thread = platform::DuplicateCurrentThread();
}

void BeginGuard(IoTimeOutGuard& guard) {
    if (!guard.section || guard.runningCount.load(std::memory_order_acquire) != 0) {
        return;
    }
    guard.runningCount.fetch_add(1, std::memory_order_relaxed);
    guard.section->Lock();
    platform::BeginCancellableCalls();
    if (!CXThread::BeginThread(&Watch, &guard, xThreadPriorityNormal, BeginThreadAutoDelete)) {
        platform::EndCancellableCalls();
        guard.section->Unlock();
        guard.runningCount.fetch_sub(1, std::memory_order_relaxed);
    }
}

bool EndGuard(IoTimeOutGuard& guard) {
    // A watcher counts from Begin until the section is left, so without one nothing was begun.
    if (guard.runningCount.load(std::memory_order_acquire) != 0) {
        unsigned int const error = platform::GetLastError();
        guard.section->Unlock();
        // The return from a sleep also takes in the watcher's last interruption, while it still counts as one.
        do {
            platform::Sleep(pollMs);
        } while (guard.runningCount.load(std::memory_order_acquire) != 0);
        platform::EndCancellableCalls();
        platform::SetLastError(error);
    }
    return *guard.timeOutWord == IoTimedOut;
}

void FreeGuard(IoTimeOutGuard& guard) {
    EndGuard(guard);
    delete guard.section;
    guard.section = nullptr;
    if (guard.thread) {
        platform::CloseThread(guard.thread);
        guard.thread = nullptr;
    }
}

GuardedCall::GuardedCall(CXTString<char16_t> const& path, unsigned int* timeOut, bool forced) {
    if (timeOut && NeedsGuard(&path, *timeOut, forced)) {
        BuildGuard(guard.emplace(), *timeOut, timeOut);
    }
}

GuardedCall::~GuardedCall() {
    if (guard) {
        FreeGuard(*guard);
    }
}

} // namespace detail
