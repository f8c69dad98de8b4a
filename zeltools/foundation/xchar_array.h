// SPDX-License-Identifier: MIT
// CXTCharArray<T>: the storage of every string, a buffer of characters that always ends in a zero.
//
// It owns the buffer, copies deeply and shares nothing. Text operations are in foundation/xstring.h; this class
// alone is useful as what a conversion fills (foundation/string_conversion.h).

#pragma once

#include "zeltools/foundation/api.h"

#include <cstddef>
#include <cstdlib>
#include <type_traits>

/// A zero-terminated array of characters in memory of the C library's allocator.
///
/// T is char or char16_t; both forms are instantiated once, in the library.
///
///     buffer   ->  | a | b | c | 0 | - | - | ... |
///                    length = 3        capacity = 16
///
/// An array that never held anything points to one constant empty buffer of its character type, has capacity 0 and
/// owns nothing. An array never gives memory back by shrinking. A pointer into it holds until the next change.
/// Running out of memory ends the process.
///
/// Threads: two threads may use two arrays freely; one array belongs to one thread at a time.
template <class T>
class ZEL_API CXTCharArray {
    static_assert(std::is_same_v<T, char> || std::is_same_v<T, char16_t>);

public:
    /// The other character type, whose texts are converted on the system's narrow code page.
    using Other = std::conditional_t<std::is_same_v<T, char>, char16_t, char>;

    /// An empty array; allocates nothing.
    CXTCharArray() noexcept : buffer(EmptyBuffer()), length(0), capacity(0) {}

    /// Copies `count` characters of `text`, which must all be readable.
    ///
    /// @param count  -1: up to the terminating zero.
    /// A null `text` gives an empty array.
    CXTCharArray(T const* text, int count);

    CXTCharArray(CXTCharArray const& other);
    CXTCharArray& operator=(CXTCharArray const& other);

    ~CXTCharArray() {
        if (capacity != 0)
            std::free(buffer);
    }

    /// The number of characters, without the terminator.
    int GetLength() const noexcept { return static_cast<int>(length); }

    /// The characters, for writing up to the length; never write into an array of capacity 0.
    T* GetText() noexcept { return buffer; }

    /// Makes the array hold `newLength` characters and the terminator behind them; new characters are not written.
    ///
    /// Where they do not fit, the capacity becomes twice the new length and one, or just the new length and one if the
    /// array was empty; below 16 it is raised to 16, from 16 to 63 to 64.
    void SetLength(std::size_t newLength);

    /// Replaces the contents by `count` characters of `text`, which may lie in this array.
    void Assign(T const* text, std::size_t count);

    /// Adds `count` characters of `text`, which may lie in this array.
    void Append(T const* text, std::size_t count);

    /// Adds what `other`, which may be this array, holds in front of its first zero.
    void AppendText(CXTCharArray const& other);

protected:
    /// The constant buffer that every array of this character type names while it owns none.
    static T* EmptyBuffer() noexcept { return const_cast<T*>(emptyBuffer); }

    /// The first allocation for `count` characters; leaves them unwritten.
    void Allocate(std::size_t count);

    T* buffer;            ///< Never null but after the buffer was taken away; buffer[length] is 0.
    std::size_t length;   ///< Characters, without the terminator.
    std::size_t capacity; ///< Characters that the allocation holds, terminator included; 0 for the empty buffer.

private:
    void Reallocate(std::size_t newCapacity);
    T const* Reserve(T const* text, std::size_t count);

    using EmptyText = T const[1];
    static EmptyText emptyBuffer;
};

extern template class CXTCharArray<char>;
extern template class CXTCharArray<char16_t>;
