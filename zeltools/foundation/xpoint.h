// SPDX-License-Identifier: MIT
// A position in whole units; x grows to the right and y downwards.
//
//     CXPoint(3, 4) - CXPoint(1, 1);   // the size 2 x 3
//     CXPoint(3, 4) + CXSize(1, 1);    // the point (4, 5)

#pragma once

#include "zeltools/foundation/saturated.h"
#include "zeltools/foundation/xsize.h"

/// The plain record of a position.
struct tagPOINT {
    int x;
    int y;
};

/// Two 32-bit coordinates with arithmetic, which stops at the ends of 32 bits. It is a tagPOINT, and is made from one.
/// Threads: a plain value.
class CXPoint : public tagPOINT {
public:
    constexpr CXPoint() : tagPOINT{0, 0} {}
    constexpr CXPoint(int horizontal, int vertical) : tagPOINT{horizontal, vertical} {}
    constexpr CXPoint(tagPOINT const& point) : tagPOINT(point) {}
    constexpr explicit CXPoint(tagSIZE const& size) : tagPOINT{size.cx, size.cy} {}

    constexpr void SetPoint(int horizontal, int vertical) { *this = {horizontal, vertical}; }
    constexpr void Offset(int dx, int dy) { *this += CXSize(dx, dy); }
    constexpr void Offset(tagSIZE const& by) { *this += by; }
    constexpr void Offset(tagPOINT const& by) { *this += by; }

    constexpr CXPoint& operator+=(tagSIZE const& by) { return *this = *this + by; }
    constexpr CXPoint& operator-=(tagSIZE const& by) { return *this = *this - by; }
    constexpr CXPoint& operator+=(tagPOINT const& by) { return *this = *this + by; }
    constexpr CXPoint& operator-=(tagPOINT const& by) { return *this = *this - CXSize(by.x, by.y); }
    constexpr CXPoint operator+(tagSIZE const& by) const {
        return {detail::SaturatedAdd(x, by.cx), detail::SaturatedAdd(y, by.cy)};
    }
    constexpr CXPoint operator-(tagSIZE const& by) const {
        return {detail::SaturatedSubtract(x, by.cx), detail::SaturatedSubtract(y, by.cy)};
    }
    constexpr CXPoint operator+(tagPOINT const& by) const { return *this + CXSize(by.x, by.y); }
    /// The way from `other` to this point.
    constexpr CXSize operator-(tagPOINT const& other) const {
        return {detail::SaturatedSubtract(x, other.x), detail::SaturatedSubtract(y, other.y)};
    }
    constexpr CXPoint operator-() const { return CXPoint() - CXSize(x, y); }
    /// Plain records are compared by way of the class.
    friend constexpr bool operator==(CXPoint const& a, CXPoint const& b) { return a.x == b.x && a.y == b.y; }
};

using CPoint = CXPoint;
