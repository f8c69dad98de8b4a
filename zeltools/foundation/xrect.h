// SPDX-License-Identifier: MIT
// A rectangle in whole units. The left and top edges belong to it, the right and bottom ones do not.
//
//     CXRect page(0, 0, 100, 50);
//     page.PtInRect(CXPoint(99, 49));           // true; (100, 50) is outside
//     (page & CXRect(90, 40, 200, 200)).Size(); // 10 x 10
//     page.IntersectRect(page, other);          // false, and page empty, where they do not meet

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/saturated.h"
#include "zeltools/foundation/xpoint.h"
#include "zeltools/foundation/xsize.h"

/// The plain record of a rectangle.
struct tagRECT {
    int left;
    int top;
    int right;
    int bottom;
};

/// Four 32-bit edges. It is a tagRECT, and is made from one. Edges, widths and heights stop at the ends of 32 bits.
///
/// A rectangle whose right edge is left of its left one, or whose bottom is above its top, has a negative width or
/// height and is empty; NormalizeRect puts such edges in order.
/// Threads: a plain value.
class CXRect : public tagRECT {
public:
    constexpr CXRect() : tagRECT{0, 0, 0, 0} {}
    constexpr CXRect(int l, int t, int r, int b) : tagRECT{l, t, r, b} {}
    constexpr CXRect(tagRECT const& rect) : tagRECT(rect) {}
    constexpr CXRect(tagPOINT const& topLeft, tagSIZE const& size)
        : CXRect(topLeft.x, topLeft.y, detail::SaturatedAdd(topLeft.x, size.cx),
                 detail::SaturatedAdd(topLeft.y, size.cy)) {}
    constexpr CXRect(tagPOINT const& topLeft, tagPOINT const& bottomRight)
        : CXRect(topLeft.x, topLeft.y, bottomRight.x, bottomRight.y) {}

    // ---- Asking ----

    constexpr int Width() const { return detail::SaturatedSubtract(right, left); }
    constexpr int Height() const { return detail::SaturatedSubtract(bottom, top); }
    constexpr CXSize Size() const { return {Width(), Height()}; }
    constexpr CXPoint TopLeft() const { return {left, top}; }
    constexpr CXPoint TopRight() const { return {right, top}; }
    constexpr CXPoint BottomLeft() const { return {left, bottom}; }
    constexpr CXPoint BottomRight() const { return {right, bottom}; }
    /// Half-way between the edges, cut towards zero.
    constexpr CXPoint CenterPoint() const { return {Middle(left, right), Middle(top, bottom)}; }

    /// Whether width or height is 0 or negative.
    constexpr bool IsRectEmpty() const { return left >= right || top >= bottom; }
    /// Whether all four edges are 0.
    constexpr bool IsRectNull() const { return *this == CXRect(); }
    constexpr bool PtInRect(tagPOINT const& point) const {
        return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
    }
    constexpr bool EqualRect(tagRECT const& other) const { return *this == other; }

    // ---- Changing ----

    constexpr void SetRect(int l, int t, int r, int b) { *this = {l, t, r, b}; }
    constexpr void SetRect(tagPOINT const& topLeft, tagPOINT const& bottomRight) { *this = {topLeft, bottomRight}; }
    constexpr void SetRectEmpty() { *this = CXRect(); }
    constexpr void CopyRect(tagRECT const& source) { *this = source; }

    /// Moves the edges outwards; negative amounts move them inwards.
    constexpr void InflateRect(int dx, int dy) { InflateRect(dx, dy, dx, dy); }
    constexpr void InflateRect(tagSIZE const& by) { InflateRect(by.cx, by.cy); }
    constexpr void InflateRect(tagRECT const& by) { InflateRect(by.left, by.top, by.right, by.bottom); }
    constexpr void InflateRect(int l, int t, int r, int b) {
        *this = {detail::SaturatedSubtract(left, l), detail::SaturatedSubtract(top, t), detail::SaturatedAdd(right, r),
                 detail::SaturatedAdd(bottom, b)};
    }
    /// Moves the edges inwards; negative amounts move them outwards.
    constexpr void DeflateRect(int dx, int dy) { DeflateRect(dx, dy, dx, dy); }
    constexpr void DeflateRect(tagSIZE const& by) { DeflateRect(by.cx, by.cy); }
    constexpr void DeflateRect(tagRECT const& by) { DeflateRect(by.left, by.top, by.right, by.bottom); }
    constexpr void DeflateRect(int l, int t, int r, int b) {
        *this = {detail::SaturatedAdd(left, l), detail::SaturatedAdd(top, t), detail::SaturatedSubtract(right, r),
                 detail::SaturatedSubtract(bottom, b)};
    }

    constexpr void OffsetRect(int dx, int dy) {
        *this = {detail::SaturatedAdd(left, dx), detail::SaturatedAdd(top, dy), detail::SaturatedAdd(right, dx),
                 detail::SaturatedAdd(bottom, dy)};
    }
    constexpr void OffsetRect(tagPOINT const& by) { OffsetRect(by.x, by.y); }
    constexpr void OffsetRect(tagSIZE const& by) { OffsetRect(by.cx, by.cy); }

    /// Moves the whole rectangle so that its left or top edge comes there.
    constexpr void MoveToX(int x) { *this = {x, top, detail::SaturatedAdd(x, Width()), bottom}; }
    constexpr void MoveToY(int y) { *this = {left, y, right, detail::SaturatedAdd(y, Height())}; }
    constexpr void MoveToXY(int x, int y) { *this = {CXPoint(x, y), Size()}; }
    constexpr void MoveToXY(tagPOINT const& point) { *this = {point, Size()}; }

    /// Exchanges edges that are in the wrong order.
    constexpr void NormalizeRect() {
        *this = {left < right ? left : right, top < bottom ? top : bottom, left < right ? right : left,
                 top < bottom ? bottom : top};
    }

    // ---- Two rectangles; `this` may be one of them ----

    /// Becomes what both have in common.
    /// @return false, with all edges 0, where that is empty.
    ZEL_API bool IntersectRect(tagRECT const& a, tagRECT const& b);

    /// Becomes the smallest rectangle that holds both; an empty one counts for nothing.
    /// @return false, with all edges 0, where both are empty.
    ZEL_API bool UnionRect(tagRECT const& a, tagRECT const& b);

    /// Becomes `a` without `b` where the rest is a rectangle, that is where `b` covers a whole side of `a`; otherwise
    /// `a`.
    /// @return false, with all edges 0, where nothing is left.
    ZEL_API bool SubtractRect(tagRECT const& a, tagRECT const& b);

    // ---- Operators: & and | as IntersectRect and UnionRect, + and - move by a distance or by a margin ----

    CXRect operator&(tagRECT const& other) const {
        CXRect result;
        result.IntersectRect(*this, other);
        return result;
    }
    CXRect operator|(tagRECT const& other) const {
        CXRect result;
        result.UnionRect(*this, other);
        return result;
    }
    CXRect& operator&=(tagRECT const& other) { return *this = *this & other; }
    CXRect& operator|=(tagRECT const& other) { return *this = *this | other; }

    constexpr CXRect operator+(tagPOINT const& by) const { return *this + CXSize(by.x, by.y); }
    constexpr CXRect operator+(tagSIZE const& by) const {
        CXRect result = *this;
        result.OffsetRect(by);
        return result;
    }
    /// Moves each edge outwards.
    constexpr CXRect operator+(tagRECT const& margins) const {
        CXRect result = *this;
        result.InflateRect(margins);
        return result;
    }
    constexpr CXRect operator-(tagPOINT const& by) const { return *this - CXSize(by.x, by.y); }
    constexpr CXRect operator-(tagSIZE const& by) const { return {TopLeft() - by, BottomRight() - by}; }
    /// Moves each edge inwards.
    constexpr CXRect operator-(tagRECT const& margins) const {
        CXRect result = *this;
        result.DeflateRect(margins);
        return result;
    }
    constexpr CXRect& operator+=(tagPOINT const& by) { return *this = *this + by; }
    constexpr CXRect& operator+=(tagSIZE const& by) { return *this = *this + by; }
    constexpr CXRect& operator+=(tagRECT const& margins) { return *this = *this + margins; }
    constexpr CXRect& operator-=(tagPOINT const& by) { return *this = *this - by; }
    constexpr CXRect& operator-=(tagSIZE const& by) { return *this = *this - by; }
    constexpr CXRect& operator-=(tagRECT const& margins) { return *this = *this - margins; }

    /// Plain records are compared by way of the class.
    friend constexpr bool operator==(CXRect const& a, CXRect const& b) {
        return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
    }

private:
    static constexpr int Middle(int a, int b) { return static_cast<int>((static_cast<long long>(a) + b) / 2); }
};

using CRect = CXRect;
