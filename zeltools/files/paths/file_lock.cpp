// SPDX-License-Identifier: MIT
#include "zeltools/files/paths/file_lock_private.h"

namespace detail {

CXCriticalSection& FileLock() {
    static CXCriticalSection& lock = *new CXCriticalSection;
    return lock;
}

} // namespace detail
