// SPDX-License-Identifier: MIT
// Holds a CXCriticalSection for a scope, and lets it go however the scope is left.
//
//     CXSingleLock hold(&lock);            // not taken yet
//     if (shared) {
//         hold.Lock();
//     }

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/process/xcritical_section.h"

/// A scoped holder of at most one critical section, once.
/// Threads: one at a time, the same from Lock to Unlock.
class ZEL_API CXSingleLock {
public:
    /// Holds nothing until Attach.
    CXSingleLock() = default;

    /// @param lock     May be null: then Lock and Unlock answer false.
    /// @param lockNow  Takes the lock at once.
    explicit CXSingleLock(CXCriticalSection* lock, bool lockNow = false);

    /// Releases the lock if this holder has it.
    virtual ~CXSingleLock();
    CXSingleLock(CXSingleLock const&) = delete;
    CXSingleLock& operator=(CXSingleLock const&) = delete;

    /// Turns to another lock, after releasing the one that is held.
    void Attach(CXCriticalSection* lock);

    /// Takes the lock; true when this holder has it afterwards. A second call does not take it again.
    bool Lock();

    /// Releases the lock; false when this holder did not have it.
    bool Unlock();

    /// Whether this holder has the lock.
    bool IsLocked() const { return locked; }

private:
    CXCriticalSection* lock = nullptr;
    bool locked = false;
};
