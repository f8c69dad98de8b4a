// SPDX-License-Identifier: MIT
// What a text in memory remembers of the searches in it.

#pragma once

#include "zeltools/ui/gap_buffer_private.h"

namespace detail {

/// A run of the text that is known to lack a character, since a search for it went through. A search that begins there
/// again, as one does that starts from the top after every change, passes over the run at once. There is one, mostly
/// the longest.
class SearchedRun {
public:
    /// Where a search downwards may begin instead of `from`.
    int Skip(char16_t sought, int from) const { return sought == unit && first <= from && from < last ? last : from; }

    /// Notes that there is no `sought` from `from` up to `to`.
    void Add(char16_t sought, int from, int to);

    /// Notes that `count` cells from `place` on became others.
    void Exchange(int place, int count, std::vector<TextCell> const& cells);

private:
    char16_t unit = 0;
    int first = 0;
    int last = 0;
};

} // namespace detail
