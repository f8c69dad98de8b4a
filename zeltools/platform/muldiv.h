// SPDX-License-Identifier: MIT
// Scaling of a coordinate by a fraction.

#pragma once

namespace platform {

/// number * numerator / denominator over a 64-bit product, rounded to the nearest, half away from zero.
/// @return -1 for a denominator of 0 or a result beyond 32 bits.
constexpr int MulDiv(int number, int numerator, int denominator) {
    if (denominator == 0)
        return -1;
    long long const product = static_cast<long long>(number) * numerator;
    long long const divisor = denominator;
    auto const magnitude = [](long long value) {
        return value < 0 ? 0 - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value);
    };
    unsigned long long const rounded = (magnitude(product) + magnitude(divisor) / 2) / magnitude(divisor);
    bool const negative = (product < 0) != (divisor < 0);
    if (rounded > 0x7FFFFFFFULL + (negative ? 1 : 0))
        return -1;
    long long const result = static_cast<long long>(rounded);
    return static_cast<int>(negative ? -result : result);
}

} // namespace platform
