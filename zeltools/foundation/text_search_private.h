// SPDX-License-Identifier: MIT
// The text search of the string class: it goes on from the character that differed and does not look back.

#pragma once

#include "zeltools/foundation/character_scan_private.h"

#include <algorithm>
#include <cstddef>

namespace detail {

/// The first position of `part` in `text` at or behind `from`; `part` has one character at least and a zero behind
/// them.
///
///     text   a b a b a c          An attempt at 0 fails at 3, where the next one starts; it fails at once, and the
///     part   a b a c              one at 4 fails at 5. So the match at 2 is never tried.
///
/// An attempt that fails at its first or second character leads to the next position either way, so the scan may
/// skip all places where these two do not both fit.
template <ScanCase Case, class T>
std::size_t FindResuming(T const* text, std::size_t length, T const* part, std::size_t partLength, std::size_t from) {
    auto const fold = [](T character) {
        if constexpr (Case == ScanCase::Exact)
            return character;
        else
            return xToLower(character);
    };
    ScanTarget<T, Case> const first(fold(part[0]));
    ScanTarget<T, Case> const second(fold(part[1])); // of a single character that is the terminator
    while (from < length) {
        from = partLength > 1 ? ScanForPair(text, length, from, first, second) : ScanFor(text, length, from, first);
        if (from == NotFound || from + partLength > length)
            return NotFound;
        // What an exact scan stops at needs no second look.
        std::size_t same = Case == ScanCase::Exact ? std::min<std::size_t>(partLength, 2) : 0;
        while (same < partLength && fold(text[from + same]) == fold(part[same]))
            ++same;
        if (same == partLength)
            return from;
        from += same ? same : 1;
    }
    return NotFound;
}

template <class T>
std::size_t FindText(T const* text, std::size_t length, T const* part, std::size_t partLength, std::size_t from,
                     bool noCase) {
    return noCase ? FindResuming<ScanCase::Ignored>(text, length, part, partLength, from)
                  : FindResuming<ScanCase::Exact>(text, length, part, partLength, from);
}

/// The position of the last match of `part` that ends below `end`, searched backwards in the same manner: the
/// attempt that fails at some character is followed by one that ends there.
template <class T>
std::size_t FindTextBackward(T const* text, std::size_t end, T const* part, std::size_t partLength) {
    while (end > 0) {
        std::size_t const last = ScanBackFor(text, end, part[partLength - 1]);
        if (last == NotFound)
            return NotFound;
        std::size_t same = 1;
        while (same < partLength && same <= last && text[last - same] == part[partLength - 1 - same])
            ++same;
        if (same == partLength)
            return last + 1 - partLength;
        if (same > last)
            return NotFound;
        end = last - same + 1;
    }
    return NotFound;
}

} // namespace detail
