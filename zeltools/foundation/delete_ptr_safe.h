// SPDX-License-Identifier: MIT
// Deletes what a pointer points to and leaves the pointer null, so that a second call does nothing.

#pragma once

#include <new>

/// For a raw block of operator new: it is freed, and no destructor runs.
inline void DeletePtrSafe(void*& block) {
    if (block) {
        ::operator delete(block);
        block = nullptr;
    }
}

/// For an object of new.
template <class T>
void DeletePtrSafe(T*& object) {
    static_assert(sizeof(T) != 0, "an incomplete type would lose its destructor");
    delete object;
    object = nullptr;
}
