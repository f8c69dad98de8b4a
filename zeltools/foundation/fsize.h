// SPDX-License-Identifier: MIT
// An extent in real units: the double precision counterpart of CXSize.

#pragma once

#include "zeltools/foundation/rounded.h"
#include "zeltools/foundation/xsize.h"

/// Two lengths. Threads: a plain value.
class CFSize {
public:
    constexpr CFSize() = default;
    constexpr CFSize(double width, double height) : cx(width), cy(height) {}
    constexpr CFSize(tagSIZE const& size) : cx(size.cx), cy(size.cy) {}

    constexpr void SetSize(double width, double height) { *this = {width, height}; }

    /// The nearest whole size, half away from zero; what does not fit stops at the ends of 32 bits.
    CXSize Rounded() const { return {detail::Rounded(cx), detail::Rounded(cy)}; }

    constexpr CFSize operator+(CFSize const& other) const { return {cx + other.cx, cy + other.cy}; }
    constexpr CFSize operator-(CFSize const& other) const { return {cx - other.cx, cy - other.cy}; }
    constexpr CFSize operator-() const { return {-cx, -cy}; }
    constexpr CFSize operator*(double factor) const { return {cx * factor, cy * factor}; }
    constexpr CFSize operator/(double divisor) const { return {cx / divisor, cy / divisor}; }
    constexpr CFSize& operator+=(CFSize const& other) { return *this = *this + other; }
    constexpr CFSize& operator-=(CFSize const& other) { return *this = *this - other; }
    constexpr CFSize& operator*=(double factor) { return *this = *this * factor; }
    constexpr CFSize& operator/=(double divisor) { return *this = *this / divisor; }
    constexpr bool operator==(CFSize const& other) const = default;

    double cx = 0; ///< Width.
    double cy = 0; ///< Height.
};
