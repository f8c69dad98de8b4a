// SPDX-License-Identifier: MIT
#include "zeltools/platform/character_case.h"

#include <algorithm>
#include <iterator>

namespace platform {

namespace {

// Upper-case units from `first` to `last`, `step` apart; each lower-case partner is `delta` further on.
struct CaseRange {
    char16_t first;
    char16_t last;
    int step;
    int delta;

    [[nodiscard]] constexpr bool Holds(int upper) const {
        return upper >= first && upper <= last && (upper - first) % step == 0;
    }
};

constexpr CaseRange upperRanges[] = {
#include "zeltools/platform/case_pairs.inc"
};

// The same ranges in the order of their lower-case units, which the upper ones do not share.
struct LowerOrder {
    CaseRange ranges[std::size(upperRanges)];

    constexpr LowerOrder() : ranges{} {
        std::copy(std::begin(upperRanges), std::end(upperRanges), std::begin(ranges));
        std::sort(std::begin(ranges), std::end(ranges),
                  [](CaseRange const& a, CaseRange const& b) { return a.first + a.delta < b.first + b.delta; });
    }
};

constexpr LowerOrder lowerOrder;

} // namespace

char16_t CharLowerW(char16_t unit) {
    if (unit < 0x80)
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
    auto const* range = std::lower_bound(std::begin(upperRanges), std::end(upperRanges), unit,
                                         [](CaseRange const& r, char16_t u) { return r.last < u; });
    // Ranges of step 2 may interlace, at most with their neighbour.
    for (int tries = 0; tries < 2 && range != std::end(upperRanges); ++tries, ++range) {
        if (range->Holds(unit))
            return static_cast<char16_t>(unit + range->delta);
    }
    return unit;
}

char16_t CharUpperW(char16_t unit) {
    if (unit < 0x80)
        return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
    auto const* range = std::lower_bound(std::begin(lowerOrder.ranges), std::end(lowerOrder.ranges), unit,
                                         [](CaseRange const& r, char16_t u) { return r.last + r.delta < u; });
    for (int tries = 0; tries < 2 && range != std::end(lowerOrder.ranges); ++tries, ++range) {
        if (range->Holds(unit - range->delta))
            return static_cast<char16_t>(unit - range->delta);
    }
    return unit;
}

} // namespace platform
