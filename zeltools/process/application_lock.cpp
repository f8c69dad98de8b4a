// SPDX-License-Identifier: MIT
#include "zeltools/process/application_lock_private.h"

CXCriticalSection& ApplicationLock() {
    // Never destroyed: a worker that the process outruns at its exit may still be inside.
    static CXCriticalSection& lock = *new CXCriticalSection;
    return lock;
}
