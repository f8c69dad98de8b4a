// SPDX-License-Identifier: MIT
// Which objects may change their place in memory as bytes. A string may: its one pointer leads to the heap, so where
// the object lies makes no difference. A type with a pointer into itself may not. The containers then grow without
// copying a single element. A host's type joins by a specialisation beside its declaration:
//
//     template <>
//     inline constexpr bool xIsBlockMovable<CWideRecord> = true;

#pragma once

#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>

template <class T>
class CXTString;
class CExLCString;

/// Whether the bytes of a T, put elsewhere, are that T, and the place that they leave needs no destructor.
template <class T>
inline constexpr bool xIsBlockMovable = std::is_trivially_copyable_v<T>;

template <class T>
inline constexpr bool xIsBlockMovable<CXTString<T>> = true;

template <>
inline constexpr bool xIsBlockMovable<CExLCString> = true;

namespace detail {

/// Whether MoveValue moves a T. Otherwise it copies, which may fail.
template <class T>
inline constexpr bool MovesSurely = std::is_nothrow_move_assignable_v<T> || xIsBlockMovable<T>;

/// Gives `to` the value of `from`, which afterwards is good for destruction only. It copies where moving could fail
/// halfway, so that an exception always leaves `from` whole.
template <class T>
void MoveValue(T& to, T& from) {
    if constexpr (std::is_nothrow_move_assignable_v<T>) {
        to = std::move(from);
    } else if constexpr (xIsBlockMovable<T>) {
        // The two change places, so that each is still destroyed once.
        alignas(T) std::byte bytes[sizeof(T)];
        std::memcpy(bytes, &to, sizeof(T));
        std::memcpy(static_cast<void*>(&to), &from, sizeof(T));
        std::memcpy(static_cast<void*>(&from), bytes, sizeof(T));
    } else {
        to = std::as_const(from);
    }
}

} // namespace detail
