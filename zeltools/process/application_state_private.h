// SPDX-License-Identifier: MIT
// The words of the application's state that both the start and close functions and the threads read.

#pragma once

#include <atomic>

/// Set when the close has begun and threads have to end: by BeforeCloseQuenbyApplication, which leaves it set, and
/// by CCustomThread's AskForThreadsEnd and WaitEndOfThreads.
extern std::atomic<bool> ApplicationCloseStarted;

/// The id of the thread that ran the start function; 0 before.
extern std::atomic<unsigned long long> ApplicationMainThreadId;
