// SPDX-License-Identifier: MIT
// A rectangle in real units: the double precision counterpart of CXRect, with the same rules for edges.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/fpoint.h"
#include "zeltools/foundation/fsize.h"
#include "zeltools/foundation/rounded.h"
#include "zeltools/foundation/xrect.h"

/// Four edges; left and top belong to the rectangle, right and bottom do not. An edge that is no number makes it empty.
/// Threads: a plain value.
class CFRect {
public:
    constexpr CFRect() = default;
    constexpr CFRect(double l, double t, double r, double b) : left(l), top(t), right(r), bottom(b) {}
    constexpr CFRect(tagRECT const& rect) : CFRect(rect.left, rect.top, rect.right, rect.bottom) {}
    constexpr CFRect(CFPoint const& topLeft, CFSize const& size)
        : CFRect(topLeft.x, topLeft.y, topLeft.x + size.cx, topLeft.y + size.cy) {}
    constexpr CFRect(CFPoint const& topLeft, CFPoint const& bottomRight)
        : CFRect(topLeft.x, topLeft.y, bottomRight.x, bottomRight.y) {}

    // ---- Asking ----

    constexpr double Width() const { return right - left; }
    constexpr double Height() const { return bottom - top; }
    constexpr CFSize Size() const { return {Width(), Height()}; }
    constexpr CFPoint TopLeft() const { return {left, top}; }
    constexpr CFPoint TopRight() const { return {right, top}; }
    constexpr CFPoint BottomLeft() const { return {left, bottom}; }
    constexpr CFPoint BottomRight() const { return {right, bottom}; }
    constexpr CFPoint CenterPoint() const { return {left / 2 + right / 2, top / 2 + bottom / 2}; }

    /// Whether width or height is not above 0.
    constexpr bool IsRectEmpty() const { return !(left < right && top < bottom); }
    /// Whether all four edges are 0.
    constexpr bool IsRectNull() const { return *this == CFRect(); }
    constexpr bool PtInRect(CFPoint const& point) const {
        return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
    }
    constexpr bool EqualRect(CFRect const& other) const { return *this == other; }

    /// The nearest whole rectangle, each edge half away from zero; what does not fit stops at the ends of 32 bits.
    CXRect Rounded() const {
        return {detail::Rounded(left), detail::Rounded(top), detail::Rounded(right), detail::Rounded(bottom)};
    }

    // ---- Changing ----

    constexpr void SetRect(double l, double t, double r, double b) { *this = {l, t, r, b}; }
    constexpr void SetRectEmpty() { *this = CFRect(); }

    /// Moves the edges outwards; negative amounts move them inwards.
    constexpr void InflateRect(double dx, double dy) { *this = {left - dx, top - dy, right + dx, bottom + dy}; }
    constexpr void DeflateRect(double dx, double dy) { InflateRect(-dx, -dy); }
    constexpr void OffsetRect(double dx, double dy) { *this = {left + dx, top + dy, right + dx, bottom + dy}; }
    constexpr void OffsetRect(CFPoint const& by) { OffsetRect(by.x, by.y); }
    constexpr void OffsetRect(CFSize const& by) { OffsetRect(by.cx, by.cy); }

    /// Moves the whole rectangle so that its left or top edge comes there.
    constexpr void MoveToX(double x) { *this = {x, top, x + Width(), bottom}; }
    constexpr void MoveToY(double y) { *this = {left, y, right, y + Height()}; }
    constexpr void MoveToXY(double x, double y) { *this = {CFPoint(x, y), Size()}; }

    /// Exchanges edges that are in the wrong order.
    constexpr void NormalizeRect() {
        *this = {left < right ? left : right, top < bottom ? top : bottom, left < right ? right : left,
                 top < bottom ? bottom : top};
    }

    // ---- Two rectangles; `this` may be one of them ----

    /// Becomes what both have in common.
    /// @return false, with all edges 0, where that is empty.
    ZEL_API bool IntersectRect(CFRect const& a, CFRect const& b);

    /// Becomes the smallest rectangle that holds both; an empty one counts for nothing.
    /// @return false, with all edges 0, where both are empty.
    ZEL_API bool UnionRect(CFRect const& a, CFRect const& b);

    CFRect operator&(CFRect const& other) const {
        CFRect result;
        result.IntersectRect(*this, other);
        return result;
    }
    CFRect operator|(CFRect const& other) const {
        CFRect result;
        result.UnionRect(*this, other);
        return result;
    }
    CFRect& operator&=(CFRect const& other) { return *this = *this & other; }
    CFRect& operator|=(CFRect const& other) { return *this = *this | other; }
    constexpr CFRect operator+(CFSize const& by) const { return {TopLeft() + by, BottomRight() + by}; }
    constexpr CFRect operator-(CFSize const& by) const { return {TopLeft() - by, BottomRight() - by}; }
    constexpr CFRect operator+(CFPoint const& by) const { return *this + CFSize(by.x, by.y); }
    constexpr CFRect operator-(CFPoint const& by) const { return *this - CFSize(by.x, by.y); }
    constexpr CFRect& operator+=(CFSize const& by) { return *this = *this + by; }
    constexpr CFRect& operator-=(CFSize const& by) { return *this = *this - by; }
    constexpr CFRect& operator+=(CFPoint const& by) { return *this = *this + by; }
    constexpr CFRect& operator-=(CFPoint const& by) { return *this = *this - by; }
    constexpr bool operator==(CFRect const& other) const = default;

    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};
