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
#include <cassert>
#include <mutex>
#include <thread>

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
        std::thread::id const self = std::this_thread::get_id();
        if (owner.load(std::memory_order_relaxed) != self) {
            section.lock();
            owner.store(self, std::memory_order_relaxed);
        }
        lockCount.store(lockCount.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
        return true;
    }

    /// Leaves what Lock entered. Always true; a lock that nobody holds stays as it is.
    bool Unlock() {
        int const left = lockCount.load(std::memory_order_relaxed) - 1;
        if (left < 0) { // else the next holder could never leave
            assert(false && "nobody is inside");
            return true;
        }
        lockCount.store(left, std::memory_order_relaxed);
        if (left == 0) {
            owner.store(std::thread::id(), std::memory_order_relaxed);
            section.unlock();
        }
        return true;
    }

    /// True while any thread, the caller too, is inside. What it says of another thread may be over at once.
    bool IsLocked() const { return lockCount.load(std::memory_order_relaxed) > 0; }

private:
    // A plain mutex and its owner: half the time of std::recursive_mutex, and entering again costs next to nothing.
    std::mutex section;
    // Written under section. A thread that reads it without finds itself only if it is inside: it alone writes that.
    std::atomic<std::thread::id> owner{};
    std::atomic<int> lockCount{0}; // depth of the Lock calls; written under section, read without it
};
