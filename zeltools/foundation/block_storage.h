// SPDX-License-Identifier: MIT
// Raw memory for the containers: counted, checked against overflow, and with the memory exception on failure. Not
// for hosts, which use the containers; it is installed because the container templates need it.

#pragma once

#include "zeltools/foundation/api.h"

#include <cstddef>
#include <memory>

namespace detail {

/// Gives uninitialised memory for `count` elements. What is large enough to gain from it gets huge pages, which spare
/// a hash table most of its address translation misses.
/// @return a block for FreeBlock, never null, also for a count of 0.
/// Errors:  CXMemoryException, also when the byte count does not fit.
ZEL_API void* AllocateBlock(std::size_t count, std::size_t elementSize, std::size_t alignment);

/// Gives a block another size and keeps its bytes up to the smaller one, moving them with their pages where that is
/// cheaper than copying. Only for an alignment that every block has, alignof(std::max_align_t).
/// Errors:  CXMemoryException; the old block then still stands.
ZEL_API void* ReallocateBlock(void* block, std::size_t count, std::size_t elementSize);

/// Gives a block back; null is ignored.
ZEL_API void FreeBlock(void* block) noexcept;

/// Makes `count` value-initialised elements, all or none.
template <class T>
T* NewElements(std::size_t count) {
    T* elements = static_cast<T*>(AllocateBlock(count, sizeof(T), alignof(T)));
    try {
        std::uninitialized_value_construct_n(elements, count);
    } catch (...) {
        FreeBlock(elements);
        throw;
    }
    return elements;
}

/// Destroys what NewElements made; null is ignored.
template <class T>
void DeleteElements(T* elements, std::size_t count) noexcept {
    if (elements)
        std::destroy_n(elements, count);
    FreeBlock(elements);
}

} // namespace detail
