// SPDX-License-Identifier: MIT
// Arithmetic that stops at the ends of its type, where plain signed arithmetic would be undefined: what is moved
// past the last coordinate or second stays there.

#pragma once

#include <concepts>
#include <limits>

namespace detail {

template <std::signed_integral T>
constexpr T SaturatedAdd(T a, T b) {
    T sum{};
    if (!__builtin_add_overflow(a, b, &sum))
        return sum;
    return b < 0 ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
}

template <std::signed_integral T>
constexpr T SaturatedSubtract(T a, T b) {
    T difference{};
    if (!__builtin_sub_overflow(a, b, &difference))
        return difference;
    return b < 0 ? std::numeric_limits<T>::max() : std::numeric_limits<T>::min();
}

} // namespace detail
