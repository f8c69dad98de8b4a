// SPDX-License-Identifier: MIT
#include "zeltools/ui/searched_run_private.h"

#include <algorithm>

namespace detail {

void SearchedRun::Add(char16_t sought, int from, int to) {
    if (sought == unit && from <= last && to >= first) {
        first = std::min(first, from);
        last = std::max(last, to);
    } else if (to - from > last - first) {
        unit = sought;
        first = from;
        last = to;
    }
}

void SearchedRun::Exchange(int place, int count, std::vector<TextCell> const& cells) {
    if (first == last || place > last) {
        return;
    }
    int const behind = place + count;
    int const longer = static_cast<int>(cells.size()) - count;
    bool const lacks = std::none_of(cells.begin(), cells.end(), [this](TextCell cell) { return cell.unit == unit; });
    if (lacks && behind >= first) {
        first = std::min(first, place);
        last = std::max(last, behind) + longer;
    } else if (place > first) {
        last = place;
    } else {
        first = std::max(first, behind) + longer;
        last = std::max(last, behind) + longer;
    }
}

} // namespace detail
