// SPDX-License-Identifier: MIT
#include "zeltools/foundation/xrect.h"

#include <algorithm>

bool CXRect::IntersectRect(tagRECT const& a, tagRECT const& b) {
    CXRect const common(std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                        std::min(a.bottom, b.bottom));
    bool const meets = !CXRect(a).IsRectEmpty() && !CXRect(b).IsRectEmpty() && !common.IsRectEmpty();
    *this = meets ? common : CXRect();
    return meets;
}

bool CXRect::UnionRect(tagRECT const& a, tagRECT const& b) {
    if (CXRect(a).IsRectEmpty())
        *this = b;
    else if (!CXRect(b).IsRectEmpty())
        *this = {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
                 std::max(a.bottom, b.bottom)};
    else
        *this = a;
    if (!IsRectEmpty())
        return true;
    SetRectEmpty();
    return false;
}

bool CXRect::SubtractRect(tagRECT const& a, tagRECT const& b) {
    CXRect rest = a;
    CXRect covered;
    if (covered.IntersectRect(a, b)) {
        bool const wholeWidth = covered.left == a.left && covered.right == a.right;
        bool const wholeHeight = covered.top == a.top && covered.bottom == a.bottom;
        if (wholeWidth && wholeHeight)
            rest.SetRectEmpty();
        else if (wholeWidth && covered.top == a.top)
            rest.top = covered.bottom;
        else if (wholeWidth && covered.bottom == a.bottom)
            rest.bottom = covered.top;
        else if (wholeHeight && covered.left == a.left)
            rest.left = covered.right;
        else if (wholeHeight && covered.right == a.right)
            rest.right = covered.left;
    }
    bool const remains = !rest.IsRectEmpty();
    *this = remains ? rest : CXRect();
    return remains;
}
