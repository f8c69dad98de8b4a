// SPDX-License-Identifier: MIT
// The recursive lock below everything else. Code that may include process/ uses CXCriticalSection instead, which
// also tells whether it is held.
//
//     platform::CriticalSection tableLock;
//     {
//         platform::ScopedLock hold(tableLock);
//         ...                                       // a nested ScopedLock on the same thread is allowed
//     }

#pragma once

#include <mutex>

namespace platform {

/// A lock that its owner may take again; it is free when it was left as often as entered. It never spins.
/// Constant-initialised, so that it may stand at namespace scope without an order of construction.
/// Threads: any; a thread leaves only what it entered.
class CriticalSection {
public:
    CriticalSection() = default;
    CriticalSection(CriticalSection const&) = delete;
    CriticalSection& operator=(CriticalSection const&) = delete;

    void Enter() { section.lock(); }
    void Leave() { section.unlock(); }

    /// Enters when no other thread is inside, without waiting.
    [[nodiscard]] bool TryEnter() { return section.try_lock(); }

private:
    std::recursive_mutex section;
};

/// Holds a critical section for as long as the object lives.
class [[nodiscard]] ScopedLock {
public:
    explicit ScopedLock(CriticalSection& section) : held(section) { held.Enter(); }
    ~ScopedLock() { held.Leave(); }
    ScopedLock(ScopedLock const&) = delete;
    ScopedLock& operator=(ScopedLock const&) = delete;

private:
    CriticalSection& held;
};

} // namespace platform
