// SPDX-License-Identifier: MIT
#include "zeltools/process/xsingle_lock.h"

CXSingleLock::CXSingleLock(CXCriticalSection* lockToHold, bool lockNow) : lock(lockToHold) {
    if (lockNow) {
        Lock();
    }
}

CXSingleLock::~CXSingleLock() {
    Unlock();
}

void CXSingleLock::Attach(CXCriticalSection* lockToHold) {
    Unlock();
    lock = lockToHold;
}

bool CXSingleLock::Lock() {
    if (lock && !locked) {
        locked = lock->Lock();
    }
    return locked;
}

bool CXSingleLock::Unlock() {
    if (!locked) {
        return false;
    }
    locked = false;
    return lock->Unlock();
}
