// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xchar_array.h"

#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/copy_safe_private.h"

#include <cassert>
#include <functional>

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

template <class T>
void CXTCharArray<T>::SetLength(std::size_t newLength) {
    if (newLength + 1 > capacity) {
        if (newLength == 0 && !buffer) {
            buffer = EmptyBuffer();
            length = 0;
            return;
        }
        std::size_t const grown = RoundedCapacity(length != 0 ? 2 * newLength + 1 : newLength + 1);
        void* const owned = capacity != 0 ? buffer : nullptr;
        buffer = Checked<T>(std::realloc(owned, grown * sizeof(T)));
        capacity = grown;
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

template <class T>
void CXTCharArray<T>::Append(T const* text, std::size_t count) {
    if (count == 0)
        return;
    std::size_t const end = length;
    if (end + count + 1 > capacity) {
        std::less<T const*> const before;
        bool const isOwn = !before(text, buffer) && !before(buffer + end, text);
        std::ptrdiff_t const offset = isOwn ? text - buffer : 0;
        SetLength(end + count);
        if (isOwn)
            text = buffer + offset;
    }
    detail::CopySafe(buffer + end, capacity - end, text, count);
    length = end + count;
    buffer[length] = T();
}

template class CXTCharArray<char>;
template class CXTCharArray<char16_t>;
