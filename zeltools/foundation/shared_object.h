// SPDX-License-Identifier: MIT
// The owner of one block of the task allocator, such as an item list of variable length.
//
//     TSharedObject<Item> item(static_cast<Item*>(xTaskMemAlloc(sizeof(Item) + 20)));
//     TSharedObject<Item> copy = item;   // a block of its own with the same bytes, the 20 behind the record included

#pragma once

#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/foundation/task_memory.h"

#include <cstring>
#include <type_traits>
#include <utility>

/// Owns a block that begins with a T, and frees it. In spite of the name nothing is shared: a copy duplicates the whole
/// block, by the size that the allocator has for it.
///
/// T is copied as bytes, so it must be trivially copyable.
/// Errors:  CXMemoryException where a copy finds no memory; the object is then as before.
/// Threads: one at a time.
template <class T>
class TSharedObject {
public:
    TSharedObject() = default;
    /// Takes the block over, which must come from xTaskMemAlloc, or be null.
    explicit TSharedObject(T* block) : object(block) {}
    TSharedObject(TSharedObject const& other) : object(Duplicate(other.object)) {}
    TSharedObject(TSharedObject&& other) noexcept : object(other.Detach()) {}
    TSharedObject& operator=(TSharedObject other) noexcept {
        std::swap(object, other.object);
        return *this;
    }
    ~TSharedObject() { xTaskMemFree(object); }

    T* Get() const { return object; }
    T* operator->() const { return object; }
    explicit operator bool() const { return object != nullptr; }

    /// Frees the block that is held and takes another one over.
    void Attach(T* block) { *this = TSharedObject(block); }
    /// Gives the block away; the caller frees it.
    [[nodiscard]] T* Detach() { return std::exchange(object, nullptr); }

private:
    static T* Duplicate(T const* block) {
        static_assert(std::is_trivially_copyable_v<T>, "the block is copied as bytes");
        if (!block)
            return nullptr;
        std::size_t const sizeBytes = xTaskMemSize(block);
        void* const copy = xTaskMemAlloc(sizeBytes);
        if (!copy)
            detail::ThrowMemory();
        std::memcpy(copy, static_cast<void const*>(block), sizeBytes);
        return static_cast<T*>(copy);
    }

    T* object = nullptr;
};
