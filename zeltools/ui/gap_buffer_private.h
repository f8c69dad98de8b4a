// SPDX-License-Identifier: MIT
// The characters of a text in memory, kept so that changes near each other are cheap.

#pragma once

#include <vector>

namespace detail {

/// A character, and the number of its format in the text's list.
struct TextCell {
    char16_t unit = 0;
    unsigned short format = 0;
};

/// A place in the text, and the number of breaks in front of it.
struct LineMark {
    int place = 0;
    int breaks = 0;
};

/// Cells with a gap where the last change was, so that a change near it moves only what lies between.
class GapBuffer {
public:
    int GetLength() const { return static_cast<int>(before.size() + after.size()); }
    TextCell const& At(int index) const;

    /// Where breaks need not be counted.
    LineMark GetGapMark() const { return {static_cast<int>(before.size()), breaksBefore}; }
    LineMark GetEndMark() const { return {GetLength(), breaksBefore + breaksAfter}; }

    /// Exchanges `count` cells from `first` on for others; both must lie inside.
    /// @return the cells that were there.
    std::vector<TextCell> Replace(int first, int count, std::vector<TextCell> const& cells);

private:
    void MoveGap(int position);

    std::vector<TextCell> before; // the cells in front of the gap
    std::vector<TextCell> after;  // those behind it, the last one first
    int breaksBefore = 0;         // the number of CR in each
    int breaksAfter = 0;
};

} // namespace detail
