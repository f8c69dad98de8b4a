// SPDX-License-Identifier: MIT
// Waiting for what another thread does, and never for a time.

#pragma once

#include <thread>

/// Gives the processor away until the condition holds.
template <class Condition>
void WaitUntil(Condition condition) {
    while (!condition()) {
        std::this_thread::yield();
    }
}
