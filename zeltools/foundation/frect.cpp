// SPDX-License-Identifier: MIT
#include "zeltools/foundation/frect.h"

#include <algorithm>

bool CFRect::IntersectRect(CFRect const& a, CFRect const& b) {
    CFRect const common(std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                        std::min(a.bottom, b.bottom));
    bool const meets = !a.IsRectEmpty() && !b.IsRectEmpty() && !common.IsRectEmpty();
    *this = meets ? common : CFRect();
    return meets;
}

bool CFRect::UnionRect(CFRect const& a, CFRect const& b) {
    if (a.IsRectEmpty())
        *this = b;
    else if (!b.IsRectEmpty())
        *this = {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
                 std::max(a.bottom, b.bottom)};
    else
        *this = a;
    if (!IsRectEmpty())
        return true;
    SetRectEmpty();
    return false;
}
