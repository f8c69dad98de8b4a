// SPDX-License-Identifier: MIT
// From a real coordinate to a whole one, defined for every number.

#pragma once

#include <cmath>
#include <limits>

namespace detail {

/// The nearest int, half away from zero; stops at the ends of the type, and gives 0 for what is no number.
inline int Rounded(double value) {
    double const nearest = std::round(value);
    if (nearest >= std::numeric_limits<int>::max())
        return std::numeric_limits<int>::max();
    if (nearest <= std::numeric_limits<int>::min())
        return std::numeric_limits<int>::min();
    return std::isnan(nearest) ? 0 : static_cast<int>(nearest);
}

} // namespace detail
