// SPDX-License-Identifier: MIT
// The dynamic array: elements in one block, indexed by int, checked on every access.
//
//     CXArray<int> numbers;
//     numbers.Add(3);                // 0: its index
//     numbers.InsertAt(0, 7, 2);     // 7 7 3
//     numbers.Remove(7, true);       // true; 7 3
//     numbers[5];                    // throws CXInvalidArgException
//
// ARG is how a value is passed: CXArray<int, int> takes it by value.

#pragma once

#include "zeltools/foundation/array_storage.h"
#include "zeltools/foundation/block_movable.h"
#include "zeltools/foundation/block_storage.h"
#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/foundation/xobject.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

/// The array. It owns its elements and copies deeply.
///
/// What invalidates a pointer or reference to an element: whatever changes size or capacity. The arguments of a call
/// may be elements of the array itself.
///
/// Threads: one at a time; const calls from any thread while nobody changes the array.
/// Errors:  CXInvalidArgException for an index or count that makes no sense or for a size beyond 2^31 - 1,
///          CXMemoryException when memory runs out, and what an element's own copying throws. None of them leaks or
///          destroys an element twice; unless stated otherwise, the elements are then as before the call.
template <class T, class ARG = T const&>
class CXArray : public CXObject {
public:
    /// Keep the growth rule as it is.
    static constexpr int KeepGrowBy = -1;

    /// The growth rule that doubles the capacity.
    static constexpr int GrowByDoubling = -2;

    /// Makes an empty array whose elements are moved in memory as blocks where their type allows it (xIsBlockMovable).
    CXArray() = default;

    /// The same with the choice: false moves elements one by one, each by its own operations.
    explicit CXArray(bool blockMoves) : plainCopy(blockMoves) {}

    CXArray(CXArray const& other) : CXObject(other) { Copy(other); }
    CXArray(CXArray&& other) noexcept { Swap(other); }
    CXArray& operator=(CXArray const& other) {
        Copy(other);
        return *this;
    }
    CXArray& operator=(CXArray&& other) noexcept {
        Swap(other);
        return *this;
    }
    ~CXArray() override { Release(); }

    /// The number of elements.
    int GetSize() const { return size; }

    /// Whether there is no element.
    bool IsEmpty() const { return size == 0; }

    /// The elements in a row; null while nothing is allocated.
    T* GetData() { return data; }
    T const* GetData() const { return data; }

    /// The bytes that one element takes.
    static constexpr int GetSizeOfElement() { return static_cast<int>(sizeof(T)); }

    /// The element at an index.
    /// Errors: CXInvalidArgException outside 0 to GetSize() - 1.
    T& operator[](int index) {
        CheckIndex(index);
        return data[index];
    }
    T const& operator[](int index) const {
        CheckIndex(index);
        return data[index];
    }

    T* begin() { return data; }
    T* end() { return data + size; }
    T const* begin() const { return data; }
    T const* end() const { return data + size; }

    /// Sets the number of elements. New ones are zero bytes, or default-constructed where the type has a constructor.
    /// @param newSize    0 empties the array; with `newGrowthRule` 0 it gives its memory back too.
    /// @param newGrowthRule  How the capacity grows from now on, where it must:
    ///
    ///     -1           as before
    ///      0           by a quarter of the size, at least 4 and at most 1024: the rule of a new array
    ///     -2           to the double
    ///     otherwise    by this many elements
    ///
    /// but always at least to `newSize`; a first allocation takes the larger of rule and `newSize`.
    void SetSize(int newSize, int newGrowthRule = KeepGrowBy);

    /// Empties the array and reserves room, at least `newCapacity` elements; the growth rule as in SetSize.
    void PreAllocate(int newCapacity, int newGrowthRule = KeepGrowBy);

    /// Gives back what the capacity holds beyond the size.
    void FreeExtra();

    /// Removes all elements; the memory is kept unless `freeMemory` is true, the growth rule always.
    void RemoveAll(bool freeMemory = false);

    /// Stores a value at an index; behind the end the array grows to it, and a gap holds new elements.
    void SetAtGrow(int index, ARG value, int newGrowthRule = KeepGrowBy);

    /// Appends a value.
    /// @return its index.
    int Add(ARG value, int newGrowthRule = KeepGrowBy);

    /// Appends all elements of an array, which may be this one.
    /// @return the old size: the index of the first one appended.
    int AddArray(CXArray const& other);

    /// Becomes a copy of another array, its `plainCopy` included; the growth rule stays. A copy of itself is nothing.
    void Copy(CXArray const& other);

    /// Becomes a copy of `count` elements, also of its own. A null pointer or a count of 0 empties the array.
    void Copy(T const* source, int count);

    /// Inserts `count` copies of a value before an index. At or behind the end the array grows to index + count, and
    /// a gap holds new elements.
    /// Errors: CXInvalidArgException for a negative index or a count below 1. When copying fails
    /// the size may have grown by elements that are whole.
    void InsertAt(int index, ARG value, int count = 1);

    /// Removes `count` elements from an index on; the capacity stays.
    /// Errors: CXInvalidArgException unless both are at least 0 and index + count at most the size.
    void RemoveAt(int index, int count = 1);

    /// Removes the elements that are equal to a value, or only the first one.
    /// @return whether there was any.
    bool Remove(ARG value, bool firstOnly = false);

    /// Stores the count and the elements, or takes over those of a loading archive. Elements with a Serialize of their
    /// own and strings go one by one, other trivially copyable ones as a block of bytes.
    /// Errors:  CXInvalidArgException for elements that are none of these, for pointers, and for a stored count beyond
    ///          2^31 - 1; those of the archive. The array then holds what was read, and is good for use.
    void Serialize(CXArchive& archive) override;

protected:
    T* data = nullptr;     ///< the elements, null while nothing is allocated
    int size = 0;          ///< elements in use; only these are constructed
    int capacity = 0;      ///< elements allocated
    int growBy = 0;        ///< the growth rule
    bool plainCopy = true; ///< elements may be moved as blocks where the type allows it

private:
    /// Elements that are copied by copying their bytes.
    static constexpr bool PlainElements = std::is_trivially_copyable_v<T>;

    /// Elements whose initial value is zero bytes.
    static constexpr bool ZeroElements = std::is_trivially_default_constructible_v<T> && PlainElements;

    /// Whether elements are moved as bytes.
    bool MovesBlocks() const { return xIsBlockMovable<T> && plainCopy; }

    void CheckIndex(int index) const {
        if (static_cast<unsigned int>(index) >= static_cast<unsigned int>(size)) [[unlikely]]
            detail::ThrowInvalidArg();
    }

    bool Owns(T const* element) const {
        return std::less_equal<>()(data, element) && std::less<>()(element, data + size);
    }

    /// The sum of two counts that are not negative.
    static int SumOf(int a, int b) {
        int sum = 0;
        if (__builtin_add_overflow(a, b, &sum)) [[unlikely]]
            detail::ThrowInvalidArg();
        return sum;
    }

    int GrownCapacity(int needed) const;
    void Reserve(int needed);
    void Relocate(int newCapacity);
    void AppendCopies(T const* source, int count);
    void Truncate(int newSize) noexcept;
    void Release() noexcept;
    void Swap(CXArray& other) noexcept;
};

// ---------------------------------------------------------------------------------------------------------------
// Bodies

template <class T, class ARG>
void CXArray<T, ARG>::SetSize(int newSize, int newGrowthRule) {
    if (newSize < 0)
        detail::ThrowInvalidArg();
    if (newGrowthRule != KeepGrowBy)
        growBy = newGrowthRule;
    if (newSize == 0) {
        if (newGrowthRule == 0)
            Release();
        else
            Truncate(0);
        return;
    }
    Reserve(newSize);
    if (newSize < size) {
        Truncate(newSize);
        return;
    }
    std::size_t const added = static_cast<std::size_t>(newSize - size);
    if constexpr (ZeroElements)
        std::memset(static_cast<void*>(data + size), 0, added * sizeof(T));
    else
        std::uninitialized_value_construct_n(data + size, added);
    size = newSize;
}

template <class T, class ARG>
void CXArray<T, ARG>::PreAllocate(int newCapacity, int newGrowthRule) {
    if (newCapacity < 0)
        detail::ThrowInvalidArg();
    Truncate(0);
    if (newCapacity == 0) {
        SetSize(0, newGrowthRule);
        return;
    }
    if (newGrowthRule != KeepGrowBy)
        growBy = newGrowthRule;
    Reserve(newCapacity);
}

template <class T, class ARG>
void CXArray<T, ARG>::FreeExtra() {
    if (size == 0)
        Release();
    else if (capacity > size)
        Relocate(size);
}

template <class T, class ARG>
void CXArray<T, ARG>::RemoveAll(bool freeMemory) {
    if (freeMemory)
        Release();
    else
        Truncate(0);
}

template <class T, class ARG>
void CXArray<T, ARG>::SetAtGrow(int index, ARG value, int newGrowthRule) {
    if (index < 0)
        detail::ThrowInvalidArg();
    if (index < size) {
        if (newGrowthRule != KeepGrowBy)
            growBy = newGrowthRule;
        data[index] = value;
        return;
    }
    T copy(value); // it may lie in the block that goes away
    SetSize(SumOf(index, 1), newGrowthRule);
    detail::MoveValue(data[index], copy);
}

template <class T, class ARG>
int CXArray<T, ARG>::Add(ARG value, int newGrowthRule) {
    if (newGrowthRule != KeepGrowBy)
        growBy = newGrowthRule;
    if (size < capacity) [[likely]] {
        std::construct_at(data + size, value);
    } else {
        T copy(value); // it may lie in the block that goes away
        Reserve(SumOf(size, 1));
        std::construct_at(data + size, std::move(copy));
    }
    return size++;
}

template <class T, class ARG>
int CXArray<T, ARG>::AddArray(CXArray const& other) {
    int const oldSize = size;
    int const added = other.size;
    Reserve(SumOf(size, added));
    AppendCopies(other.data, added);
    return oldSize;
}

template <class T, class ARG>
void CXArray<T, ARG>::Copy(CXArray const& other) {
    if (this == &other)
        return;
    Copy(other.data, other.size);
    plainCopy = other.plainCopy;
}

template <class T, class ARG>
void CXArray<T, ARG>::Copy(T const* source, int count) {
    if (!source || count == 0) {
        RemoveAll(false);
        return;
    }
    if (count < 0)
        detail::ThrowInvalidArg();
    if constexpr (PlainElements) {
        if (count <= capacity && !Owns(source)) {
            size = 0;
            AppendCopies(source, count);
            return;
        }
    }
    // The copy is whole before the old content goes, which may be its source, and which stays when copying fails.
    CXArray copy(plainCopy);
    copy.growBy = growBy;
    copy.Reserve(count);
    copy.AppendCopies(source, count);
    Swap(copy);
}

template <class T, class ARG>
void CXArray<T, ARG>::InsertAt(int index, ARG value, int count) {
    if (index < 0 || count < 1)
        detail::ThrowInvalidArg();
    int const newSize = SumOf(std::max(index, size), count);
    T const copy(value); // it may lie in the block that goes away, or in the tail that moves up
    Reserve(newSize);
    if (index > size)
        SetSize(index);
    if (MovesBlocks()) {
        T* const hole = data + index;
        std::size_t const tailBytes = static_cast<std::size_t>(size - index) * sizeof(T);
        std::memmove(static_cast<void*>(hole + count), hole, tailBytes);
        try {
            std::uninitialized_fill_n(hole, count, copy);
        } catch (...) {
            std::memmove(static_cast<void*>(hole), hole + count, tailBytes);
            throw;
        }
        size = newSize;
    } else {
        // At the end first and into place when all of them are made: there is never a hole.
        int const oldSize = size;
        for (; size < newSize; ++size)
            std::construct_at(data + size, copy);
        std::rotate(data + index, data + oldSize, data + newSize);
    }
}

template <class T, class ARG>
void CXArray<T, ARG>::RemoveAt(int index, int count) {
    if (index < 0 || count < 0 || index > size || count > size - index)
        detail::ThrowInvalidArg();
    if (count == 0)
        return;
    T* const hole = data + index;
    if (MovesBlocks()) {
        std::destroy_n(hole, count);
        std::memmove(static_cast<void*>(hole), hole + count,
                     static_cast<std::size_t>(size - index - count) * sizeof(T));
        size -= count;
    } else {
        std::move(hole + count, data + size, hole);
        Truncate(size - count);
    }
}

template <class T, class ARG>
bool CXArray<T, ARG>::Remove(ARG value, bool firstOnly) {
    T* const first = std::find(begin(), end(), value);
    if (first == end())
        return false;
    if (firstOnly) {
        RemoveAt(static_cast<int>(first - data));
        return true;
    }
    T const copy(value); // the elements that go may include it
    T* const last = std::remove_if(first, end(), [&copy](T const& element) { return element == copy; });
    Truncate(static_cast<int>(last - data));
    return true;
}

template <class T, class ARG>
void CXArray<T, ARG>::Serialize(CXArchive& archive) {
    if constexpr (std::is_default_constructible_v<T> && (detail::SerializableElement<T> || detail::PlainElement<T>)) {
        detail::ArrayAccess access{this, data, size, sizeof(T), nullptr, nullptr};
        access.setSize = [](void* array, int newSize) -> void* {
            auto& self = *static_cast<CXArray*>(array);
            self.SetSize(newSize);
            return self.data;
        };
        if constexpr (detail::SerializableElement<T>)
            access.serializeElement = [](CXArchive& stream, void* element) {
                detail::SerializeElement(stream, *static_cast<T*>(element));
            };
        detail::SerializeArray(archive, access);
    } else {
        detail::ThrowInvalidArg();
    }
}

/// The capacity that the growth rule gives an array which must hold more than its capacity.
template <class T, class ARG>
int CXArray<T, ARG>::GrownCapacity(int needed) const {
    if (!data)
        return std::max(growBy, needed);
    int increment = growBy;
    if (growBy == GrowByDoubling)
        increment = capacity;
    else if (growBy == 0)
        increment = std::clamp(size / 4, 4, 1024);
    // A negative rule of another kind shrinks nothing: what is needed is then all that is taken.
    return std::max(needed, SumOf(capacity, increment));
}

/// Makes room for `needed` elements.
template <class T, class ARG>
void CXArray<T, ARG>::Reserve(int needed) {
    if (needed > capacity)
        Relocate(GrownCapacity(needed));
}

/// Moves the elements into a block of another capacity, not below the size.
template <class T, class ARG>
void CXArray<T, ARG>::Relocate(int newCapacity) {
    std::size_t const count = static_cast<std::size_t>(newCapacity);
    if constexpr (alignof(T) <= alignof(std::max_align_t)) {
        if (MovesBlocks()) {
            data = static_cast<T*>(detail::ReallocateBlock(data, count, sizeof(T)));
            capacity = newCapacity;
            return;
        }
    }
    T* const block = static_cast<T*>(detail::AllocateBlock(count, sizeof(T), alignof(T)));
    try {
        if constexpr (std::is_nothrow_move_constructible_v<T> || !std::is_copy_constructible_v<T>)
            std::uninitialized_move_n(data, size, block);
        else
            std::uninitialized_copy_n(data, size, block);
    } catch (...) {
        detail::FreeBlock(block);
        throw;
    }
    detail::DeleteElements(std::exchange(data, block), static_cast<std::size_t>(size));
    capacity = newCapacity;
}

/// Copies elements behind the last one, where there is room for them.
template <class T, class ARG>
void CXArray<T, ARG>::AppendCopies(T const* source, int count) {
    if (count == 0)
        return;
    std::uninitialized_copy_n(source, count, data + size);
    size += count;
}

template <class T, class ARG>
void CXArray<T, ARG>::Truncate(int newSize) noexcept {
    std::destroy(data + newSize, data + size);
    size = newSize;
}

template <class T, class ARG>
void CXArray<T, ARG>::Release() noexcept {
    detail::DeleteElements(std::exchange(data, nullptr), static_cast<std::size_t>(std::exchange(size, 0)));
    capacity = 0;
}

template <class T, class ARG>
void CXArray<T, ARG>::Swap(CXArray& other) noexcept {
    std::swap(data, other.data);
    std::swap(size, other.size);
    std::swap(capacity, other.capacity);
    std::swap(growBy, other.growBy);
    std::swap(plainCopy, other.plainCopy);
}
