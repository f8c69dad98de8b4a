// SPDX-License-Identifier: MIT
// A position in real units: the double precision counterpart of CXPoint.

#pragma once

#include "zeltools/foundation/fsize.h"
#include "zeltools/foundation/rounded.h"
#include "zeltools/foundation/xpoint.h"

/// Two coordinates. Threads: a plain value.
class CFPoint {
public:
    constexpr CFPoint() = default;
    constexpr CFPoint(double horizontal, double vertical) : x(horizontal), y(vertical) {}
    constexpr CFPoint(tagPOINT const& point) : x(point.x), y(point.y) {}

    constexpr void SetPoint(double horizontal, double vertical) { *this = {horizontal, vertical}; }
    constexpr void Offset(double dx, double dy) { *this += CFSize(dx, dy); }

    /// The nearest whole point, half away from zero; what does not fit stops at the ends of 32 bits.
    CXPoint Rounded() const { return {detail::Rounded(x), detail::Rounded(y)}; }

    constexpr CFPoint operator+(CFSize const& by) const { return {x + by.cx, y + by.cy}; }
    constexpr CFPoint operator-(CFSize const& by) const { return {x - by.cx, y - by.cy}; }
    constexpr CFPoint operator+(CFPoint const& by) const { return {x + by.x, y + by.y}; }
    /// The way from `other` to this point.
    constexpr CFSize operator-(CFPoint const& other) const { return {x - other.x, y - other.y}; }
    constexpr CFPoint operator-() const { return {-x, -y}; }
    constexpr CFPoint operator*(double factor) const { return {x * factor, y * factor}; }
    constexpr CFPoint operator/(double divisor) const { return {x / divisor, y / divisor}; }
    constexpr CFPoint& operator+=(CFSize const& by) { return *this = *this + by; }
    constexpr CFPoint& operator-=(CFSize const& by) { return *this = *this - by; }
    constexpr CFPoint& operator+=(CFPoint const& by) { return *this = *this + by; }
    constexpr CFPoint& operator-=(CFPoint const& by) { return *this = *this - CFSize(by.x, by.y); }
    constexpr bool operator==(CFPoint const& other) const = default;

    double x = 0;
    double y = 0;
};
