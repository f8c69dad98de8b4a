// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xchar_array.h"

#include "zeltools/foundation/character_scan_private.h"
#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/copy_safe_private.h"

#include <cassert>

namespace {

// Small texts grow often: one step to 16, one to 64, then by the rule.
std::size_t RoundedCapacity(std::size_t characters) {
    return characters < 16 ? 16 : characters < 64 ? 64 : characters;
}

template <class T>
T* Checked(void* allocation) {
    if (!allocation)
        std::abort(); // nothing above can go on without its text
    return static_cast<T*>(allocation);
}

} // namespace

template <class T>
typename CXTCharArray<T>::EmptyText CXTCharArray<T>::emptyBuffer = {};

template <class T>
CXTCharArray<T>::CXTCharArray(T const* text, int count) : CXTCharArray() {
    assert(count >= -1);
    std::size_t const characters = !text ? 0 : count < 0 ? xStrLen(text) : static_cast<std::size_t>(count);
    if (characters == 0)
        return;
    Allocate(characters);
    detail::CopySafe(buffer, capacity, text, characters);
}

template <class T>
CXTCharArray<T>::CXTCharArray(CXTCharArray const& other) : CXTCharArray() {
    if (other.length == 0)
        return;
    Allocate(other.length);
    detail::CopySafe(buffer, capacity, other.buffer, length);
}

template <class T>
CXTCharArray<T>& CXTCharArray<T>::operator=(CXTCharArray const& other) {
    if (this != &other)
        Assign(other.buffer, other.length);
    return *this;
}

template <class T>
void CXTCharArray<T>::Allocate(std::size_t count) {
    capacity = RoundedCapacity(count + 1);
    buffer = Checked<T>(std::malloc(capacity * sizeof(T)));
    length = count;
    buffer[length] = T();
}

// A small block is had faster anew, from the allocator's cache of the thread, than by realloc, which passes that by.
template <class T>
void CXTCharArray<T>::Reallocate(std::size_t newCapacity) {
    constexpr std::size_t SmallBytes = 1024;
    std::size_t const bytes = newCapacity * sizeof(T);
    if (capacity == 0) {
        buffer = Checked<T>(std::malloc(bytes));
    } else if (bytes > SmallBytes) {
        buffer = Checked<T>(std::realloc(buffer, bytes));
    } else {
        T* const moved = Checked<T>(std::malloc(bytes));
        detail::CopySafe(moved, newCapacity, buffer, capacity); // all of it, as realloc does
        std::free(buffer);
        buffer = moved;
    }
    capacity = newCapacity;
}

template <class T>
void CXTCharArray<T>::SetLength(std::size_t newLength) {
    if (newLength + 1 > capacity) {
        if (newLength == 0 && !buffer) {
            buffer = EmptyBuffer();
            length = 0;
            return;
        }
        std::size_t const grown = RoundedCapacity(length != 0 ? 2 * newLength + 1 : newLength + 1);
        Reallocate(grown);
    }
    length = newLength;
    buffer[length] = T();
}

template <class T>
void CXTCharArray<T>::Assign(T const* text, std::size_t count) {
    if (count + 1 > capacity) {
        if (count == 0)
            return; // it names the empty buffer already
        // A text inside this array is no longer than the array, so it is never moved by this.
        SetLength(count);
    }
    detail::CopySafe(buffer, capacity, text, count);
    length = count;
    buffer[length] = T();
}

// Makes room for `count` characters at the end, and gives where `text` is afterwards, since it may be in this array.
template <class T>
T const* CXTCharArray<T>::Reserve(T const* text, std::size_t count) {
    if (length + count + 1 <= capacity)
        return text;
    bool const isOwn = detail::PointsInto(text, buffer, length);
    std::ptrdiff_t const offset = isOwn ? text - buffer : 0;
    std::size_t const end = length;
    SetLength(end + count);
    length = end;
    return isOwn ? buffer + offset : text;
}

template <class T>
void CXTCharArray<T>::Append(T const* text, std::size_t count) {
    if (count == 0)
        return;
    text = Reserve(text, count);
    detail::CopySafe(buffer + length, capacity - length, text, count);
    length += count;
    buffer[length] = T();
}

template <class T>
void CXTCharArray<T>::AppendText(CXTCharArray const& other) {
    std::size_t const limit = other.length;
    if (limit == 0)
        return;
    T const* const text = Reserve(other.buffer, limit);
    length += detail::CopyUpToZero(buffer + length, text, limit);
    buffer[length] = T();
}

template class CXTCharArray<char>;
template class CXTCharArray<char16_t>;
