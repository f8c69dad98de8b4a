// SPDX-License-Identifier: MIT
#include "zeltools/platform/linux/futex.h"

#include <climits>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace platform {

static_assert(sizeof(std::atomic<unsigned int>) == 4 && std::atomic<unsigned int>::is_always_lock_free);

void FutexWait(std::atomic<unsigned int>& word, unsigned int expected, timespec const* timeOut) {
    ::syscall(SYS_futex, &word, FUTEX_WAIT_PRIVATE, expected, timeOut, nullptr, 0);
}

void FutexWakeAll(std::atomic<unsigned int>& word) {
    ::syscall(SYS_futex, &word, FUTEX_WAKE_PRIVATE, INT_MAX, nullptr, nullptr, 0);
}

} // namespace platform
