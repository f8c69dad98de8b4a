// SPDX-License-Identifier: MIT
// The lock of the toolkit. CXSingleLock holds one for a scope.
//
//     CXCriticalSection lock;
//     CXSingleLock hold(&lock, true);      // released at the end of the block
//
// It guards short work on shared data. It is no signal between threads and has no time limit.

#pragma once

#include "zeltools/foundation/api.h"

#include <atomic>
#include <mutex>

/// A recursive lock that knows how deep it is held. It never spins: a thread that finds it taken sleeps.
/// The order in which the toolkit takes its locks stands in docs/locks.md.
/// Threads: any; a thread leaves only what it entered, and nobody is inside when the object goes.
class ZEL_API CXCriticalSection {
public:
    CXCriticalSection() = default;
    virtual ~CXCriticalSection();
    CXCriticalSection(CXCriticalSection const&) = delete;
    CXCriticalSection& operator=(CXCriticalSection const&) = delete;

    /// Waits until no other thread is inside, then enters. Always true.
    bool Lock() {
        section.lock();
        lockCount.store(lockCount.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
        return true;
    }

    /// Leaves what Lock entered. Always true.
    bool Unlock() {
        lockCount.store(lockCount.load(std::memory_order_relaxed) - 1, std::memory_order_relaxed);
        section.unlock();
        return true;
    }

    /// True while any thread, the caller too, is inside. What it says of another thread may be over at once.
    bool IsLocked() const { return lockCount.load(std::memory_order_relaxed) > 0; }

private:
    std::recursive_mutex section;
    std::atomic<int> lockCount{0}; // depth of the Lock calls; written under section, read without it
};
