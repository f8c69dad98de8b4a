// SPDX-License-Identifier: MIT
#include "zeltools/ui/gap_buffer_private.h"

#include <algorithm>
#include <iterator>

namespace detail {

namespace {

int BreaksIn(std::vector<TextCell>::const_iterator first, std::vector<TextCell>::const_iterator last) {
    return static_cast<int>(std::count_if(first, last, [](TextCell cell) { return cell.unit == u'\r'; }));
}

} // namespace

TextCell const& GapBuffer::At(int index) const {
    std::size_t const place = static_cast<std::size_t>(index);
    return place < before.size() ? before[place] : after[after.size() - 1 - (place - before.size())];
}

std::vector<TextCell> GapBuffer::Replace(int first, int count, std::vector<TextCell> const& newCells) {
    MoveGap(first);
    auto const end = after.end() - count;
    std::vector<TextCell> removed(after.rbegin(), std::make_reverse_iterator(end));
    before.insert(before.end(), newCells.begin(), newCells.end()); // what can throw comes first
    breaksBefore += BreaksIn(newCells.begin(), newCells.end());
    breaksAfter -= BreaksIn(end, after.end());
    after.erase(end, after.end());
    return removed;
}

void GapBuffer::MoveGap(int position) {
    std::size_t const place = static_cast<std::size_t>(position);
    int moved = 0; // breaks that go from before to after
    if (place < before.size()) {
        auto const start = before.begin() + position;
        moved = BreaksIn(start, before.end());
        after.insert(after.end(), before.rbegin(), std::make_reverse_iterator(start));
        before.erase(start, before.end());
    } else {
        auto const start = after.end() - static_cast<std::ptrdiff_t>(place - before.size());
        moved = -BreaksIn(start, after.end());
        before.insert(before.end(), after.rbegin(), std::make_reverse_iterator(start));
        after.erase(start, after.end());
    }
    breaksBefore -= moved;
    breaksAfter += moved;
}

} // namespace detail
