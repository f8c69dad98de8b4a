// SPDX-License-Identifier: MIT
// Waiting on a word of memory. Both calls are safe in a signal handler, which condition variables are not.

#pragma once

#include <atomic>

struct timespec;

namespace platform {

/// Sleeps while the word holds `expected`, until a wake, a signal or the end of the time. The caller looks again.
/// @param timeOut  How long at most; null waits without limit.
void FutexWait(std::atomic<unsigned int>& word, unsigned int expected, timespec const* timeOut = nullptr);

/// Wakes everybody who sleeps on the word. It touches nothing but the word's address, so the word may be gone.
void FutexWakeAll(std::atomic<unsigned int>& word);

} // namespace platform
