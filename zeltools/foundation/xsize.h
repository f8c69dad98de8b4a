// SPDX-License-Identifier: MIT
// An extent in whole units: pixels, or what the host counts.
//
//     CXSize(3, 4) + CXSize(1, 1);   // 4 x 5

#pragma once

#include "zeltools/foundation/saturated.h"

/// The plain record of an extent.
struct tagSIZE {
    int cx; ///< Width.
    int cy; ///< Height.
};

/// Two 32-bit lengths with arithmetic, which stops at the ends of 32 bits. It is a tagSIZE, and is made from one.
/// Threads: a plain value.
class CXSize : public tagSIZE {
public:
    constexpr CXSize() : tagSIZE{0, 0} {}
    constexpr CXSize(int width, int height) : tagSIZE{width, height} {}
    constexpr CXSize(tagSIZE const& size) : tagSIZE(size) {}

    constexpr void SetSize(int width, int height) { *this = {width, height}; }

    constexpr CXSize& operator+=(tagSIZE const& other) { return *this = *this + other; }
    constexpr CXSize& operator-=(tagSIZE const& other) { return *this = *this - other; }
    constexpr CXSize operator+(tagSIZE const& other) const {
        return {detail::SaturatedAdd(cx, other.cx), detail::SaturatedAdd(cy, other.cy)};
    }
    constexpr CXSize operator-(tagSIZE const& other) const {
        return {detail::SaturatedSubtract(cx, other.cx), detail::SaturatedSubtract(cy, other.cy)};
    }
    constexpr CXSize operator-() const { return CXSize() - *this; }
    /// Plain records are compared by way of the class.
    friend constexpr bool operator==(CXSize const& a, CXSize const& b) { return a.cx == b.cx && a.cy == b.cy; }
};

using CSize = CXSize;
